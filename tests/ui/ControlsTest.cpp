// The controls' set-up, titles, actions, enabling rules and focus, through the loaded view.

#include "tests/ui/PanelFixture.h"

#include "platform/ButtonState.h"
#include "platform/FormatterValidator.h"
#include "platform/Toolkit.h"
#include "ui/Hilite.h"

namespace uitest {
namespace {

using ControlsTest = PanelFixture;

// 1: usable (editable, selectable, black); 0: greyed (read-only, not
// selectable, grey, still enabled); -1: neither.
int usability(const QLineEdit *field)
{
    const bool black = pde::textColor(field) == pde::blackColor();
    if (field->isEnabled() && !field->isReadOnly() && pde::isSelectable(field) && black)
        return 1;
    return field->isEnabled() && field->isReadOnly() && !pde::isSelectable(field) && !black ? 0 : -1;
}

void setStates(JpCoNuratPrintPdeQr7150kBC &panel, int hold, int main, int sub)
{
    pde::setButtonState(panel.holdButton, hold);
    pde::setButtonState(panel.mainCodeCB, main);
    pde::setButtonState(panel.subCodeCB, sub);
}

enum Action { Hold, MainCB, SubCB };
enum Focus { MainText, SubText, Nothing };

TEST_F(ControlsTest, ActionsApplyTheRulesAndLeaveTheFocus)
{
    // Check box states count as on unless 0 (-1 is mixed); the keep button only at 1.
    // Usability: main box, main field, sub box, sub field.
    const struct { Action action; int hold, main, sub; std::array<int, 4> usable; Focus focus; } cases[] = {
        { Hold, 0, 0, 0, { 1, 0, 0, 0 }, Nothing },
        { Hold, 0, 1, 0, { 1, 1, 1, 0 }, Nothing },
        { Hold, 0, -1, -1, { 1, 1, 1, 1 }, SubText },
        { Hold, 0, 0, 1, { 1, 0, 0, 1 }, SubText }, // the sub field follows its own box only
        { Hold, 1, -1, 0, { 0, 0, 0, 0 }, Nothing },
        { Hold, 1, 1, 1, { 0, 0, 0, 0 }, Nothing },
        { MainCB, 0, 1, 1, {}, MainText },
        { MainCB, 0, 0, 1, {}, Nothing },
        { MainCB, 1, 1, 0, {}, Nothing },
        { SubCB, 0, 1, 1, {}, SubText },
        { SubCB, 0, 1, 0, {}, Nothing },
    };
    showActive();
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::Message() << "action " << c.action << ", states " << c.hold << c.main << c.sub);
        // Start from the opposite greying, so that every rule has to act.
        myQr7150kBCHilite(panel->mainCodeCB.data(), c.usable[0]);
        myQr7150kBCHilite(panel->mainCodeText.data(), c.usable[1]);
        myQr7150kBCHilite(panel->subCodeCB.data(), c.usable[2]);
        myQr7150kBCHilite(panel->subCodeText.data(), c.usable[3]);
        setStates(*panel, c.hold, c.main, c.sub);
        panel->holdButton->setFocus();
        (c.action == Hold ? panel->holdButtonProc(nullptr) : c.action == MainCB ? panel->mainCodeCBProc(nullptr)
                                                                                : panel->subCodeCBProc(nullptr));
        if (c.action == Hold) {
            EXPECT_EQ((std::array { int(panel->mainCodeCB->isEnabled()), usability(panel->mainCodeText),
                                    int(panel->subCodeCB->isEnabled()), usability(panel->subCodeText) }),
                      c.usable);
        }
        QWidget *focus[] = { panel->mainCodeText, panel->subCodeText, window.get() };
        EXPECT_EQ(QApplication::focusWidget(), focus[c.focus]);
    }
}

TEST_F(ControlsTest, ClickedCheckBoxesRunTheirActions)
{
    setStates(*panel, 0, 1, 1);
    panel->holdButtonProc(nullptr);
    pde::setStringValue(panel->mainCodeText, QStringLiteral("1234"));
    pde::setStringValue(panel->subCodeText, QStringLiteral("5678"));
    QTest::mouseClick(panel->subCodeCB, Qt::LeftButton);
    EXPECT_EQ(panel->subCodeText->text(), QString());
    EXPECT_EQ(usability(panel->subCodeText), 0);
    QTest::mouseClick(panel->mainCodeCB, Qt::LeftButton);
    EXPECT_EQ(panel->mainCodeText->text(), QString());
    EXPECT_EQ(usability(panel->mainCodeText), 0);
    EXPECT_FALSE(panel->subCodeCB->isEnabled()) << "the sub code goes off with the main code";
}

TEST_F(ControlsTest, RestoreOrderSettlesSubCodeWithoutMainCode)
{
    setStates(*panel, 0, 0, 1);
    pde::setStringValue(panel->mainCodeText, QStringLiteral("111"));
    pde::setStringValue(panel->subCodeText, QStringLiteral("222"));
    panel->subCodeCBProc(panel->subCodeCB);
    panel->mainCodeCBProc(panel->mainCodeCB);
    panel->holdButtonProc(panel->holdButton);
    EXPECT_EQ(pde::buttonState(panel->subCodeCB), 0);
    EXPECT_FALSE(panel->subCodeCB->isEnabled());
    EXPECT_EQ(usability(panel->mainCodeText), 0);
    EXPECT_EQ(usability(panel->subCodeText), 0);
    EXPECT_EQ(panel->mainCodeText->text(), QString());
    EXPECT_EQ(panel->subCodeText->text(), QStringLiteral("222")) << "greyed, not cleared";
}

TEST_F(ControlsTest, FieldWithoutTagOnlyChangesColour)
{
    panel->subCodeText->setProperty("tag", 0);
    setStates(*panel, 0, 1, 0);
    panel->subCodeTextEnabled();
    EXPECT_EQ(pde::textColor(panel->subCodeText), pde::grayColor());
    EXPECT_EQ(usability(panel->subCodeText), -1) << "neither read-only nor unselectable";
    pde::setButtonState(panel->subCodeCB, 1);
    panel->subCodeTextEnabled();
    EXPECT_EQ(usability(panel->subCodeText), 1);
}

TEST_F(ControlsTest, TitlesAreLocalisedOnceAndPadlocksDiffer)
{
    const QIcon icon = panel->holdButton->icon();
    EXPECT_EQ(panel->holdButton->iconSize(), QSize(18, 18));
    EXPECT_NE(icon.pixmap(18, QIcon::Normal, QIcon::Off).toImage(), icon.pixmap(18, QIcon::Normal, QIcon::On).toImage());

    buildPanel(QLocale(QLocale::Japanese, QLocale::Japan));
    EXPECT_EQ(panel->billingCodeBox->title(), QStringLiteral("部門コード"));
    EXPECT_EQ(panel->mainCodeCB->text(), QStringLiteral("主コード:"));
    EXPECT_EQ(panel->subCodeCB->text(), QStringLiteral("副コード:"));
    EXPECT_EQ(panel->panelName(), QStringLiteral("部門コード"));
    EXPECT_EQ(panel->holdButton->toolTip(), QStringLiteral("このコードを次のジョブにも使い、変更できないようにします"));

    // A second set-up would translate this title and install a second formatter.
    panel->mainCodeCB->setText(QStringLiteral("Main Code:"));
    panel->initializeUI();
    panel->panelView();
    EXPECT_EQ(panel->mainCodeCB->text(), QStringLiteral("Main Code:"));
    EXPECT_EQ(panel->mainCodeText->findChildren<pde::FormatterValidator *>().size(), 1);
}

TEST_F(ControlsTest, LocalizedStringValueTakesTheKeyBeforeTheFirstColon)
{
    QLocale::setDefault(QLocale(QLocale::Japanese, QLocale::Japan));
    QLineEdit field(QStringLiteral("Sub Code:"));
    QGroupBox box(QStringLiteral("Billing Code"));
    QCheckBox checkBox(QStringLiteral("Main Code: x"));
    QCheckBox untitled;
    QObject plain;
    const struct { QVariant object; QString expected; } cases[] = {
        { QStringLiteral("Main Code:"), "主コード:" },
        { QStringLiteral("Billing Code"), "部門コード" },
        { QStringLiteral(" \n\tSub Code: and more: text"), "副コード:" },
        { QStringLiteral(":Main Code"), ":Main Code" },
        { QStringLiteral("Unknown Key:"), "Unknown Key:" },
        { QString(""), "" },
        { QVariant::fromValue(&field), "副コード:" },
        { QVariant::fromValue(&box), "部門コード" },
        { QVariant::fromValue<QObject *>(&checkBox), "主コード:" },
        { QVariant::fromValue<QObject *>(&untitled), "" },
        { QVariant::fromValue(&plain), {} },
        { QVariant::fromValue<QObject *>(nullptr), {} },
        { QVariant(QByteArray("Main Code:")), {} },
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.object.toString().toStdString());
        EXPECT_EQ(panel->localizedStringValue(c.object), c.expected);
        EXPECT_EQ(panel->localizedStringValue(c.object).isNull(), c.expected.isNull());
    }
}

TEST(AbsentControlsTest, EveryOperationToleratesAMissingView)
{
    JpCoNuratPrintPdeQr7150kBC panel(std::make_shared<pdetest::TestCallback>());
    panel.initializeUI();
    EXPECT_EQ(panel.hasInited, 1);
    panel.subCodeCBProc(nullptr);
    panel.mainCodeCBProc(nullptr);
    panel.holdButtonProc(nullptr);
    EXPECT_TRUE(panel.localizedStringValue(QVariant::fromValue(panel.mainCodeCB.data())).isNull());
}

} // namespace
} // namespace uitest
