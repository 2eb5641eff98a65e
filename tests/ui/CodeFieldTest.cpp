// The code fields' length limit, as the user meets it in a real line edit.

#include "tests/ui/PanelFixture.h"

#include "platform/ButtonState.h"
#include "platform/FormatterValidator.h"
#include "platform/Toolkit.h"
#include "ui/JpCoNuratPrintPdeQr7150kBCMyRomanFilter.h"

#include <QClipboard>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QMimeData>

namespace uitest {
namespace {

using CodeFieldTest = PanelFixture;

// The roads by which text reaches a field from the user.
enum class Edit { Type, Paste, Backspace, Commit, ComposeAndCommit, Drop, DeleteAndUndo };

void commit(QLineEdit *field, const QString &preedit, const QString &text)
{
    QInputMethodEvent event(preedit, {});
    event.setCommitString(text);
    QCoreApplication::sendEvent(field, &event);
}

void edit(QLineEdit *field, Edit kind, const QString &input)
{
    QMimeData data;
    data.setText(input);
    QDragEnterEvent enter(QPoint(1, 1), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QDropEvent drop(QPointF(1, 1), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    switch (kind) {
    case Edit::Type: QTest::keyClicks(field, input); break;
    case Edit::Paste: QGuiApplication::clipboard()->setText(input), QTest::keyClick(field, Qt::Key_V, Qt::ControlModifier); break;
    case Edit::Backspace:
    case Edit::DeleteAndUndo: QTest::keyClick(field, Qt::Key_Backspace); break;
    case Edit::ComposeAndCommit: commit(field, input, QString()); [[fallthrough]];
    case Edit::Commit: commit(field, QString(), input); break;
    case Edit::Drop: QCoreApplication::sendEvent(field, &enter), QCoreApplication::sendEvent(field, &drop); break;
    }
    if (kind == Edit::DeleteAndUndo)
        QTest::keyClick(field, Qt::Key_Z, Qt::ControlModifier);
    QCoreApplication::processEvents();
}

TEST_F(CodeFieldTest, EditsAreLimitedByLengthOnly)
{
    const QString a31(31, 'a'), a32(32, 'a'), forty = QStringLiteral("0123456789").repeated(4);
    // Selection before and after as start and length; length 0 is a caret.
    const struct { const char *name; QString before; int start, length; Edit edit; QString input, after;
                   int afterStart, afterLength; } cases[] = {
        { "31 plus one", a31, 31, 0, Edit::Type, "b", a31 + "b", 32, 0 },
        { "32, caret at the end", a32, 32, 0, Edit::Type, "b", a32, 0, 32 },
        { "32, caret inside", a32, 10, 0, Edit::Type, "b", a32, 10, 0 },
        { "32 selected, typed over", a32, 0, 32, Edit::Type, "b", a32, 0, 32 },
        { "all selected, deleted", a32, 0, 32, Edit::Backspace, "", "", 0, 0 },
        { "40 pasted into empty", "", 0, 0, Edit::Paste, forty, forty.left(32), 0, 32 },
        { "20 pasted before 20", QString(20, 'x'), 0, 0, Edit::Paste, QString(20, 'p'),
          QString(20, 'p') + QString(20, 'x'), 20, 0 },
        { "31 plus a commit", a31, 31, 0, Edit::Commit, "日本語", a31 + "日", 0, 32 },
        { "31 plus a composed commit", a31, 31, 0, Edit::ComposeAndCommit, "日本語", a31 + "日", 0, 32 },
        { "40 dropped into empty", "", 0, 0, Edit::Drop, forty, forty.left(32), 0, 32 },
        { "40 deleted and undone", forty, 0, 40, Edit::DeleteAndUndo, "", forty.left(32), 0, 32 },
        { "40 pasted over themselves", forty, 0, 40, Edit::Paste, forty, forty.left(32), 0, 32 },
        { "one of 32 typed over with itself", a32, 0, 1, Edit::Type, "a", a32, 0, 1 },
    };
    showActive();
    pde::setButtonState(panel->mainCodeCB, 1);
    pde::setButtonState(panel->subCodeCB, 1);
    panel->holdButtonProc(nullptr);
    for (QLineEdit *field : { panel->mainCodeText.data(), panel->subCodeText.data() }) {
        SCOPED_TRACE(field->objectName().toStdString());
        field->setFocus();
        for (const auto &c : cases) {
            SCOPED_TRACE(c.name);
            pde::setStringValue(field, c.before);
            c.length ? field->setSelection(c.start, c.length) : field->setCursorPosition(c.start);
            edit(field, c.edit, c.input);
            EXPECT_EQ(field->text(), c.after);
            EXPECT_EQ(field->hasSelectedText() ? field->selectionStart() : field->cursorPosition(), c.afterStart);
            EXPECT_EQ(field->selectionLength(), c.afterLength);
        }
        // Text the program sets is not held to the limit.
        pde::setStringValue(field, forty);
        EXPECT_EQ(field->text(), forty);
    }
}

TEST_F(CodeFieldTest, FormatterWithoutLimitTakesNothing)
{
    QLineEdit field;
    pde::FormatterValidator::setFormatter(&field, std::make_unique<JpCoNuratPrintPdeQr7150kBCMyRomanFilter>());
    field.show();
    edit(&field, Edit::Type, QStringLiteral("7"));
    edit(&field, Edit::Paste, QStringLiteral("abc"));
    EXPECT_EQ(field.text(), QString());
    // Typed over with the same text: still nothing may be inserted.
    pde::setStringValue(&field, QStringLiteral("b"));
    field.selectAll();
    edit(&field, Edit::Type, QStringLiteral("b"));
    EXPECT_EQ(field.text(), QString());
}

} // namespace
} // namespace uitest
