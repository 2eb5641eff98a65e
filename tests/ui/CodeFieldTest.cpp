// The code fields' length limit, as the user meets it in a real line edit.

#include "tests/ui/PanelFixture.h"

#include "platform/FormatterValidator.h"
#include "platform/ButtonState.h"
#include "platform/Toolkit.h"
#include "ui/JpCoNuratPrintPdeQr7150kBCMyRomanFilter.h"

#include <QLineEdit>

namespace uitest {
namespace {

using CodeFieldTest = PanelFixture;

enum class Edit { Type, Paste, Backspace };

struct EditCase
{
    const char *name;
    QString before;
    int selectionStart;
    int selectionLength; // 0: a caret at selectionStart
    Edit edit;
    QString input;
    QString after;
    int afterSelectionStart;
    int afterSelectionLength;
};

QString repeated(const char *unit, int times)
{
    return QString::fromUtf8(unit).repeated(times);
}

void select(QLineEdit *field, int start, int length)
{
    if (length > 0)
        field->setSelection(start, length);
    else
        field->setCursorPosition(start);
}

void apply(QLineEdit *field, Edit edit, const QString &input)
{
    switch (edit) {
    case Edit::Type: typeText(field, input); break;
    case Edit::Paste: pasteText(field, input); break;
    case Edit::Backspace: pressKey(field, Qt::Key_Backspace); break;
    }
}

void expectSelection(const QLineEdit *field, int start, int length)
{
    if (length > 0) {
        EXPECT_EQ(field->selectionStart(), start);
        EXPECT_EQ(field->selectionLength(), length);
    } else {
        EXPECT_FALSE(field->hasSelectedText());
        EXPECT_EQ(field->cursorPosition(), start);
    }
}

TEST_F(CodeFieldTest, EditsAreLimitedByLengthOnly)
{
    const QString forty = repeated("0123456789", 4);
    const EditCase cases[] = {
        { "31 plus one", repeated("a", 31), 31, 0, Edit::Type, "b", repeated("a", 31) + "b", 32, 0 },
        { "32, caret at the end", repeated("a", 32), 32, 0, Edit::Type, "b", repeated("a", 32), 0, 32 },
        { "32, caret inside", repeated("a", 32), 10, 0, Edit::Type, "b", repeated("a", 32), 10, 0 },
        { "32 selected, typed over", repeated("a", 32), 0, 32, Edit::Type, "b", repeated("a", 32), 0, 32 },
        { "all selected, deleted", repeated("a", 32), 0, 32, Edit::Backspace, "", "", 0, 0 },
        { "40 pasted into empty", "", 0, 0, Edit::Paste, forty, forty.left(32), 0, 32 },
        { "40 pasted before 10", repeated("x", 10), 0, 0, Edit::Paste, forty, forty.left(32), 0, 32 },
        { "40 pasted before 32", repeated("x", 32), 0, 0, Edit::Paste, forty, forty.left(32), 0, 32 },
        { "20 pasted before 20", repeated("x", 20), 0, 0, Edit::Paste, repeated("p", 20),
          repeated("p", 20) + repeated("x", 20), 20, 0 },
        { "overlong field, deleting inside", repeated("x", 40), 10, 0, Edit::Backspace, "", repeated("x", 39), 9, 0 },
        { "overlong field, deleting at the end cuts it", repeated("x", 40), 40, 0, Edit::Backspace, "",
          repeated("x", 32), 0, 32 },
        { "non-Latin letters", "", 0, 0, Edit::Type, "請求 é-9", "請求 é-9", 6, 0 },
        { "non-Latin letter at the limit", repeated("a", 31), 31, 0, Edit::Type, "漢字",
          repeated("a", 31) + "漢", 0, 32 },
    };
    showActive();
    for (QLineEdit *field : { panel->mainCodeText.data(), panel->subCodeText.data() }) {
        SCOPED_TRACE(field->objectName().toStdString());
        pde::setButtonState(panel->mainCodeCB, 1);
        pde::setButtonState(panel->subCodeCB, 1);
        panel->holdButtonProc(nullptr);
        field->setFocus();
        for (const EditCase &c : cases) {
            SCOPED_TRACE(c.name);
            pde::setStringValue(field, c.before);
            select(field, c.selectionStart, c.selectionLength);
            apply(field, c.edit, c.input);
            EXPECT_EQ(field->text(), c.after);
            expectSelection(field, c.afterSelectionStart, c.afterSelectionLength);
        }
    }
}

TEST_F(CodeFieldTest, FormatterWithoutLimitTakesNothing)
{
    QLineEdit field;
    pde::FormatterValidator::setFormatter(&field, std::make_unique<JpCoNuratPrintPdeQr7150kBCMyRomanFilter>());
    field.show();
    typeText(&field, QStringLiteral("7"));
    EXPECT_EQ(field.text(), QString());
    pasteText(&field, QStringLiteral("abc"));
    EXPECT_EQ(field.text(), QString());
}

TEST_F(CodeFieldTest, ProgramTextIsNotChecked)
{
    const QString forty = repeated("9", 40);
    pde::setStringValue(panel->mainCodeText, forty);
    EXPECT_EQ(panel->mainCodeText->text(), forty);
}

TEST(RomanFilterTest, ValueIsTheTextItself)
{
    JpCoNuratPrintPdeQr7150kBCMyRomanFilter filter;
    filter.setFormat(QStringLiteral("##0"));
    EXPECT_TRUE(filter.stringForObjectValue(QVariant()).isNull());
    EXPECT_EQ(filter.stringForObjectValue(QStringLiteral("00A1")), QStringLiteral("00A1"));
    EXPECT_EQ(filter.stringForObjectValue(12), QStringLiteral("12"));

    for (const QString &text : { QString(""), QString("007"), QString("a b"), QString("1e3") }) {
        QVariant value;
        QString error = QStringLiteral("untouched");
        EXPECT_TRUE(filter.getObjectValue(&value, text, &error));
        EXPECT_EQ(value.metaType(), QMetaType::fromType<QString>());
        EXPECT_EQ(value.toString(), text);
        EXPECT_EQ(error, QStringLiteral("untouched"));
    }
}

} // namespace
} // namespace uitest
