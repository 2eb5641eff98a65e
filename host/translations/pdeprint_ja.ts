<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja_JP">
<context>
    <name>DialogDriver</name>
    <message>
        <source>Print %1</source>
        <translation>%1 を印刷</translation>
    </message>
</context>
<context>
    <name>QPrintPropertiesWidget</name>
    <message>
        <source>Advanced</source>
        <translation>詳細設定</translation>
    </message>
    <message>
        <source>There are conflicts in some options. Please fix them.</source>
        <translation>いくつかのオプションが競合しています。修正してください。</translation>
    </message>
</context>
<context>
    <name>QPrintSettingsOutput</name>
    <message>
        <source>Double Sided Printing</source>
        <translation>両面印刷</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>オフ</translation>
    </message>
    <message>
        <source>Long side binding</source>
        <translation>長辺綴じ</translation>
    </message>
    <message>
        <source>Short side binding</source>
        <translation>短辺綴じ</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>ページ指定</translation>
    </message>
    <message>
        <source>Specify pages or ranges separated by commas. Ranges are specified by two numbers separated by a hyphen. E.g: 3,5-7,9 prints pages 3, 5, 6, 7 and 9.</source>
        <translation>ページまたはページ範囲をカンマで区切って指定します。範囲は 2 つの数字をハイフンでつないで指定します。例: 3,5-7,9 はページ 3、5、6、7、9 を印刷します。</translation>
    </message>
</context>
<context>
    <name>pdeprint::CodesWindow</name>
    <message>
        <source>Billing Codes — %1</source>
        <translation>部門コード — %1</translation>
    </message>
    <message>
        <source>The codes were not saved: a panel refused them.</source>
        <translation>コードは保存されませんでした。パネルが受け付けませんでした。</translation>
    </message>
</context>
<context>
    <name>pdeprint::DesktopNotifier</name>
    <message>
        <source>Change codes…</source>
        <translation>コードを変更…</translation>
    </message>
</context>
<context>
    <name>pdeprint::HeldJobWindow</name>
    <message>
        <source>Billing Code — %1 on %2</source>
        <translation>部門コード — %2 の %1</translation>
    </message>
    <message>
        <source>“%1” waits on %2 for its billing code.</source>
        <translation>「%1」はプリンター %2 で部門コードの入力を待っています。</translation>
    </message>
    <message>
        <source>Cancel Job</source>
        <translation>ジョブをキャンセル</translation>
    </message>
    <message>
        <source>Print</source>
        <translation>印刷</translation>
    </message>
    <message>
        <source>The job was not released: %1</source>
        <translation>ジョブを印刷に回せませんでした: %1</translation>
    </message>
    <message>
        <source>a panel stopped it.</source>
        <translation>パネルが止めました。</translation>
    </message>
    <message>
        <source>job %1 on %2 is no longer held; nothing sent</source>
        <translation>%2 のジョブ %1 はもう保留されていません。何も送信していません</translation>
    </message>
    <message>
        <source>released job %1 on %2</source>
        <translation>%2 のジョブ %1 を印刷に回しました</translation>
    </message>
    <message>
        <source>The job was not cancelled: %1</source>
        <translation>ジョブをキャンセルできませんでした: %1</translation>
    </message>
    <message>
        <source>cancelled job %1 on %2</source>
        <translation>%2 のジョブ %1 をキャンセルしました</translation>
    </message>
    <message>
        <source>&lt;b&gt;Sent from %1&lt;/b&gt;, not from this computer. Print it only if you sent it from there; otherwise cancel it.</source>
        <translation>&lt;b&gt;%1 から送られたジョブです&lt;/b&gt;。このコンピュータからではありません。そこから自分で送った場合だけ印刷し、そうでなければキャンセルしてください。</translation>
    </message>
</context>
<context>
    <name>pdeprint::JobWindows</name>
    <message>
        <source>released job %1 on %2 with the kept codes</source>
        <translation>%2 のジョブ %1 を保持しているコードで印刷に回しました</translation>
    </message>
    <message>
        <source>Printing “%1”</source>
        <translation>「%1」を印刷しています</translation>
    </message>
    <message>
        <source>job %1 on %2 was cancelled, released or finished elsewhere; its window closed</source>
        <translation>%2 のジョブ %1 はほかの場所でキャンセル、解放、または完了されたため、ウィンドウを閉じました</translation>
    </message>
    <message>
        <source>Billing Code</source>
        <translation>部門コード</translation>
    </message>
    <message>
        <source>an unknown host</source>
        <translation>不明なホスト</translation>
    </message>
    <message>
        <source>Printed from this computer; released on %1 with your kept billing codes.</source>
        <translation>このコンピュータから印刷されたジョブを、保持している部門コードで %1 に送りました。</translation>
    </message>
    <message>
        <source>job %1 on %2, sent from %3, was cancelled, released or finished elsewhere; its window closed</source>
        <translation>%3 から送られた %2 のジョブ %1 はほかの場所でキャンセル、解放、または完了されたため、ウィンドウを閉じました</translation>
    </message>
</context>
</TS>
