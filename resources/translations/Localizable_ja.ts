<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja_JP">
<context>
    <name>Localizable</name>
    <message>
        <source>Billing Code</source>
        <translation>部門コード</translation>
    </message>
    <message>
        <source>Main Code</source>
        <translation>主コード</translation>
    </message>
    <message>
        <source>Sub Code</source>
        <translation>副コード</translation>
    </message>
    <message>
        <source>Keep these codes for the next jobs and lock them</source>
        <translation>このコードを次のジョブにも使い、変更できないようにします</translation>
    </message>
</context>
</TS>
