// The controls' set-up, titles, actions, enabling rules and focus, through
// the loaded view; and the code fields' length limit as the user meets it.

#include "tests/ui/PanelFixture.h"

#include "platform/ButtonState.h"
#include "platform/FormatterValidator.h"
#include "platform/Toolkit.h"
#include "ui/Hilite.h"
#include "ui/JpCoNuratPrintPdeQr7150kBCMyRomanFilter.h"

#include <QClipboard>
#include <QInputMethodEvent>
#include <QLineEdit>

namespace uitest {
namespace {

using ControlsTest = PanelFixture;
using CodeFieldTest = PanelFixture;

// 1: usable (editable, selectable, black); 0: greyed (read-only, not
// selectable, grey, still enabled); -1: neither.
int usability(const QLineEdit *field)
{
    const bool black = pde::textColor(field) == pde::blackColor();
    if (field->isEnabled() && !field->isReadOnly() && pde::isSelectable(field) && black)
        return 1;
    return field->isEnabled() && field->isReadOnly() && !pde::isSelectable(field) && !black ? 0 : -1;
}

enum Action { Hold, MainCB, SubCB };
enum Focus { MainText, SubText, Nothing };

TEST_F(ControlsTest, ActionsApplyTheRulesAndLeaveTheFocus)
{
    // Check box states count as on unless 0 (-1 is mixed); the keep button only at 1.
    // Usability of main box, main field, sub box, sub field (9: the action leaves it);
    // then which code texts stay, and the sub box's state after the action.
    constexpr int x = 9;
    const struct { Action action; int hold, main, sub; std::array<int, 4> usable; Focus focus;
                   bool mainKept, subKept; int subAfter; } cases[] = {
        { Hold, 0, 0, 1, { 1, 0, 0, 1 }, SubText, true, true, 1 }, // the sub field follows its own box only
        { Hold, 1, -1, 1, { 0, 0, 0, 0 }, Nothing, true, true, 1 },
        { MainCB, 0, -1, 1, { x, 1, 1, 1 }, MainText, true, true, 1 },
        { MainCB, 0, 0, 1, { x, 0, 0, 0 }, Nothing, false, true, 0 }, // the sub code greyed, not cleared
        { SubCB, 0, 1, -1, { x, x, x, 1 }, SubText, true, true, -1 }, // mixed counts as on: the code stays
        { SubCB, 0, 1, 0, { x, x, x, 0 }, Nothing, true, false, 0 },
    };
    showActive();
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::Message() << "action " << c.action << ", states " << c.hold << c.main << c.sub);
        // Start from the opposite greying, so that every rule has to act.
        myQr7150kBCHilite(panel->mainCodeCB.data(), c.usable[0]);
        myQr7150kBCHilite(panel->mainCodeText.data(), c.usable[1]);
        myQr7150kBCHilite(panel->subCodeCB.data(), c.usable[2]);
        myQr7150kBCHilite(panel->subCodeText.data(), c.usable[3]);
        pde::setButtonState(panel->holdButton, c.hold);
        pde::setButtonState(panel->mainCodeCB, c.main);
        pde::setButtonState(panel->subCodeCB, c.sub);
        pde::setStringValue(panel->mainCodeText, QStringLiteral("111"));
        pde::setStringValue(panel->subCodeText, QStringLiteral("222"));
        panel->holdButton->setFocus();
        (c.action == Hold ? panel->holdButtonProc(nullptr) : c.action == MainCB ? panel->mainCodeCBProc(nullptr)
                                                                                : panel->subCodeCBProc(nullptr));
        const std::array<int, 4> usable { int(panel->mainCodeCB->isEnabled()), usability(panel->mainCodeText),
                                          int(panel->subCodeCB->isEnabled()), usability(panel->subCodeText) };
        for (int i = 0; i < 4; ++i)
            EXPECT_TRUE(c.usable[i] == x || usable[i] == c.usable[i]) << "control " << i << ": " << usable[i];
        QWidget *focus[] = { panel->mainCodeText, panel->subCodeText, window.get() };
        EXPECT_EQ(QApplication::focusWidget(), focus[c.focus]);
        EXPECT_EQ(panel->mainCodeText->text(), c.mainKept ? QStringLiteral("111") : QString());
        EXPECT_EQ(panel->subCodeText->text(), c.subKept ? QStringLiteral("222") : QString());
        EXPECT_EQ(pde::buttonState(panel->subCodeCB), c.subAfter);
    }
}

TEST_F(ControlsTest, TitlesAreLocalisedOnceAndPadlocksShowTheirState)
{
    // Open while off, locked while on.
    const auto image = [](const QIcon &icon, QIcon::State state) {
        return icon.pixmap(QSize(18, 18), QIcon::Normal, state).toImage().convertToFormat(QImage::Format_ARGB32);
    };
    EXPECT_EQ(panel->holdButton->iconSize(), QSize(18, 18));
    EXPECT_EQ(image(panel->holdButton->icon(), QIcon::Off), image(pde::iconForTypeCode(pde::typeCode("ulck")), QIcon::Off));
    EXPECT_EQ(image(panel->holdButton->icon(), QIcon::On), image(pde::iconForTypeCode(pde::typeCode("lock")), QIcon::Off));

    buildPanel(QLocale(QLocale::Japanese, QLocale::Japan));
    EXPECT_EQ((QStringList { panel->billingCodeBox->title(), panel->mainCodeCB->text(), panel->subCodeCB->text(),
                             panel->panelName(), panel->holdButton->toolTip() }),
              (QStringList { "部門コード", "主コード:", "副コード:", "部門コード",
                             "このコードを次のジョブにも使い、変更できないようにします" }));

    // A second set-up would translate this title and install a second formatter.
    panel->mainCodeCB->setText(QStringLiteral("Main Code:"));
    panel->panelView();
    EXPECT_EQ(panel->mainCodeCB->text(), QStringLiteral("Main Code:"));
    EXPECT_EQ(panel->mainCodeText->findChildren<pde::FormatterValidator *>().size(), 1);
}

TEST_F(ControlsTest, LocalizedStringValueTakesTheKeyBeforeTheFirstColon)
{
    QLocale::setDefault(QLocale(QLocale::Japanese, QLocale::Japan));
    QLineEdit field(QStringLiteral("Sub Code:"));
    QCheckBox untitled;
    QObject plain;
    const struct { QVariant object; QString expected; } cases[] = {
        { QStringLiteral(" \n\tSub Code: and more: text"), "副コード:" },
        { QStringLiteral(":Main Code"), ":Main Code" },
        { QStringLiteral("Unknown Key:"), "Unknown Key:" },
        { QVariant::fromValue(&field), "副コード:" },
        { QVariant::fromValue<QObject *>(&untitled), "" }, // empty, not null
        { QVariant::fromValue(&plain), {} },
        { QVariant(QByteArray("Main Code:")), {} },
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.object.toString().toStdString());
        EXPECT_EQ(panel->localizedStringValue(c.object), c.expected);
        EXPECT_EQ(panel->localizedStringValue(c.object).isNull(), c.expected.isNull());
    }
}

// A control the view did not supply is never touched: a fault here crashes.
TEST(AbsentControlsTest, EveryOperationToleratesAMissingView)
{
    JpCoNuratPrintPdeQr7150kBC panel(std::make_shared<pdetest::TestCallback>());
    panel.initializeUI();
    panel.subCodeCBProc(nullptr);
    panel.mainCodeCBProc(nullptr);
    panel.holdButtonProc(nullptr);
}

// The roads by which text reaches a field from the user.
enum class Edit { Type, Paste, Commit, DeleteAndUndo };

void edit(QLineEdit *field, Edit kind, const QString &input)
{
    switch (kind) {
    case Edit::Type: QTest::keyClicks(field, input); break;
    case Edit::Paste: QGuiApplication::clipboard()->setText(input), QTest::keyClick(field, Qt::Key_V, Qt::ControlModifier); break;
    case Edit::DeleteAndUndo: QTest::keyClick(field, Qt::Key_Backspace); break;
    case Edit::Commit: {
        QInputMethodEvent event;
        event.setCommitString(input);
        QCoreApplication::sendEvent(field, &event);
    }
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
        { "32 selected, typed over", a32, 0, 32, Edit::Type, "b", a32, 0, 32 },
        { "40 pasted into empty", "", 0, 0, Edit::Paste, forty, forty.left(32), 0, 32 },
        { "20 pasted before 20", QString(20, 'x'), 0, 0, Edit::Paste, QString(20, 'p'),
          QString(20, 'p') + QString(20, 'x'), 20, 0 },
        { "31 plus a commit", a31, 31, 0, Edit::Commit, "日本語", a31 + "日", 0, 32 },
        { "40 deleted and undone", forty, 0, 40, Edit::DeleteAndUndo, "", forty.left(32), 0, 32 },
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
    }
}

TEST_F(CodeFieldTest, FormatterWithoutLimitTakesNothing)
{
    // Not even a character typed over with itself.
    QLineEdit field(QStringLiteral("b"));
    pde::FormatterValidator::setFormatter(&field, std::make_unique<JpCoNuratPrintPdeQr7150kBCMyRomanFilter>());
    field.selectAll();
    edit(&field, Edit::Type, QStringLiteral("b"));
    EXPECT_EQ(field.text(), QString());
}

} // namespace
} // namespace uitest
