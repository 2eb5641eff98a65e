// The controls' set-up, actions, enabling rules and focus, through the loaded view.

#include "tests/ui/PanelFixture.h"

#include "platform/ButtonState.h"
#include "platform/FormatterValidator.h"
#include "platform/Toolkit.h"
#include "tests/support/TestSupport.h"
#include "ui/Hilite.h"
#include "ui/JpCoNuratPrintPdeQr7150kBCMyRomanFilter.h"

#include <QApplication>
#include <QTest>

namespace uitest {
namespace {

using ControlsTest = PanelFixture;

struct States
{
    int hold;
    int main;
    int sub;
};

void setStates(JpCoNuratPrintPdeQr7150kBC &panel, States states)
{
    pde::setButtonState(panel.holdButton, states.hold);
    pde::setButtonState(panel.mainCodeCB, states.main);
    pde::setButtonState(panel.subCodeCB, states.sub);
}

struct RuleCase
{
    const char *name;
    States states;
    bool mainCBUsable;
    bool mainTextUsable;
    bool subCBUsable;
    bool subTextUsable;
};

TEST_F(ControlsTest, KeepButtonActionAppliesEveryRule)
{
    const RuleCase cases[] = {
        { "all off", { 0, 0, 0 }, true, false, false, false },
        { "main on", { 0, 1, 0 }, true, true, true, false },
        { "both on", { 0, 1, 1 }, true, true, true, true },
        { "both mixed count as on", { 0, -1, -1 }, true, true, true, true },
        { "main mixed, sub off", { 0, -1, 0 }, true, true, true, false },
        { "sub field follows its own box only", { 0, 0, 1 }, true, false, false, true },
        { "kept, both on", { 1, 1, 1 }, false, false, false, false },
        { "kept, mixed and off", { 1, -1, 0 }, false, false, false, false },
        { "kept, all off", { 1, 0, 0 }, false, false, false, false },
    };
    for (const RuleCase &c : cases) {
        SCOPED_TRACE(c.name);
        // Start from the opposite greying, so that every rule has to act.
        myQr7150kBCHilite(panel->mainCodeCB.data(), c.mainCBUsable);
        myQr7150kBCHilite(panel->mainCodeText.data(), c.mainTextUsable);
        myQr7150kBCHilite(panel->subCodeCB.data(), c.subCBUsable);
        myQr7150kBCHilite(panel->subCodeText.data(), c.subTextUsable);
        setStates(*panel, c.states);
        pde::setStringValue(panel->mainCodeText, QStringLiteral("M1"));
        pde::setStringValue(panel->subCodeText, QStringLiteral("S1"));

        panel->holdButtonProc(panel->holdButton);

        EXPECT_EQ(panel->mainCodeCB->isEnabled(), c.mainCBUsable);
        EXPECT_EQ(isUsable(panel->mainCodeText), c.mainTextUsable);
        EXPECT_EQ(isGreyed(panel->mainCodeText), !c.mainTextUsable);
        EXPECT_EQ(panel->subCodeCB->isEnabled(), c.subCBUsable);
        EXPECT_EQ(isUsable(panel->subCodeText), c.subTextUsable);
        EXPECT_EQ(isGreyed(panel->subCodeText), !c.subTextUsable);
        // Greying changes neither states nor texts.
        EXPECT_EQ(pde::buttonState(panel->mainCodeCB), c.states.main);
        EXPECT_EQ(pde::buttonState(panel->subCodeCB), c.states.sub);
        EXPECT_EQ(panel->mainCodeText->text(), QStringLiteral("M1"));
        EXPECT_EQ(panel->subCodeText->text(), QStringLiteral("S1"));
    }
}

enum class Action { Hold, MainCB, SubCB };
enum class Focus { MainText, SubText, Nothing };

struct FocusCase
{
    const char *name;
    Action action;
    States states;
    Focus expected;
};

TEST_F(ControlsTest, FocusEndsWhereTheLastRuleLeavesIt)
{
    showActive();
    const FocusCase cases[] = {
        { "keep off, both on", Action::Hold, { 0, 1, 1 }, Focus::SubText },
        { "keep off, only main usable", Action::Hold, { 0, 1, 0 }, Focus::Nothing },
        { "kept", Action::Hold, { 1, 1, 1 }, Focus::Nothing },
        { "main on", Action::MainCB, { 0, 1, 1 }, Focus::MainText },
        { "main mixed", Action::MainCB, { 0, -1, 0 }, Focus::MainText },
        { "main off", Action::MainCB, { 0, 0, 1 }, Focus::Nothing },
        { "main on but kept", Action::MainCB, { 1, 1, 0 }, Focus::Nothing },
        { "sub on", Action::SubCB, { 0, 1, 1 }, Focus::SubText },
        { "sub off", Action::SubCB, { 0, 1, 0 }, Focus::Nothing },
    };
    for (const FocusCase &c : cases) {
        SCOPED_TRACE(c.name);
        setStates(*panel, c.states);
        panel->holdButton->setFocus();
        ASSERT_EQ(QApplication::focusWidget(), panel->holdButton.data());

        switch (c.action) {
        case Action::Hold: panel->holdButtonProc(nullptr); break;
        case Action::MainCB: panel->mainCodeCBProc(nullptr); break;
        case Action::SubCB: panel->subCodeCBProc(nullptr); break;
        }

        QWidget *expected = c.expected == Focus::MainText ? static_cast<QWidget *>(panel->mainCodeText)
            : c.expected == Focus::SubText                ? static_cast<QWidget *>(panel->subCodeText)
                                                          : window.get();
        EXPECT_EQ(QApplication::focusWidget(), expected);
    }
}

TEST_F(ControlsTest, ClickingTheControlsRunsTheirActions)
{
    showActive();
    setStates(*panel, { 0, 1, 1 });
    panel->holdButtonProc(nullptr);
    pde::setStringValue(panel->mainCodeText, QStringLiteral("1234"));
    pde::setStringValue(panel->subCodeText, QStringLiteral("5678"));

    // Keeping greys all four and keeps their contents.
    QTest::mouseClick(panel->holdButton, Qt::LeftButton);
    EXPECT_EQ(pde::buttonState(panel->holdButton), 1);
    EXPECT_FALSE(panel->mainCodeCB->isEnabled());
    EXPECT_FALSE(panel->subCodeCB->isEnabled());
    EXPECT_TRUE(isGreyed(panel->mainCodeText));
    EXPECT_TRUE(isGreyed(panel->subCodeText));
    EXPECT_EQ(panel->mainCodeText->text(), QStringLiteral("1234"));
    EXPECT_EQ(panel->subCodeText->text(), QStringLiteral("5678"));

    QTest::mouseClick(panel->holdButton, Qt::LeftButton);
    EXPECT_TRUE(panel->mainCodeCB->isEnabled());
    EXPECT_TRUE(panel->subCodeCB->isEnabled());
    EXPECT_TRUE(isUsable(panel->mainCodeText));
    EXPECT_TRUE(isUsable(panel->subCodeText));

    // The sub code off: its field empties, greys and lets go of the focus.
    QTest::mouseClick(panel->subCodeCB, Qt::LeftButton);
    EXPECT_EQ(panel->subCodeText->text(), QString());
    EXPECT_TRUE(isGreyed(panel->subCodeText));
    EXPECT_EQ(QApplication::focusWidget(), window.get());

    // And on again: usable, with the focus.
    QTest::mouseClick(panel->subCodeCB, Qt::LeftButton);
    EXPECT_TRUE(isUsable(panel->subCodeText));
    EXPECT_EQ(QApplication::focusWidget(), panel->subCodeText.data());

    // The main code off takes the sub code's box along, but not its text.
    pde::setStringValue(panel->subCodeText, QStringLiteral("5678"));
    QTest::mouseClick(panel->mainCodeCB, Qt::LeftButton);
    EXPECT_EQ(panel->mainCodeText->text(), QString());
    EXPECT_EQ(pde::buttonState(panel->subCodeCB), 0);
    EXPECT_FALSE(panel->subCodeCB->isEnabled());
    EXPECT_TRUE(isGreyed(panel->mainCodeText));
    EXPECT_TRUE(isGreyed(panel->subCodeText));
    EXPECT_EQ(panel->subCodeText->text(), QStringLiteral("5678"));
}

TEST_F(ControlsTest, RestoreOrderSettlesSubCodeWithoutMainCode)
{
    setStates(*panel, { 0, 0, 1 });
    pde::setStringValue(panel->mainCodeText, QStringLiteral("111"));
    pde::setStringValue(panel->subCodeText, QStringLiteral("222"));

    panel->subCodeCBProc(panel->subCodeCB);
    panel->mainCodeCBProc(panel->mainCodeCB);
    panel->holdButtonProc(panel->holdButton);

    EXPECT_EQ(pde::buttonState(panel->subCodeCB), 0);
    EXPECT_FALSE(panel->subCodeCB->isEnabled());
    EXPECT_TRUE(panel->mainCodeCB->isEnabled());
    EXPECT_EQ(panel->mainCodeText->text(), QString());
    EXPECT_TRUE(isGreyed(panel->mainCodeText));
    EXPECT_TRUE(isGreyed(panel->subCodeText));
    EXPECT_EQ(panel->subCodeText->text(), QStringLiteral("222"));
}

TEST_F(ControlsTest, FieldWithoutTagOnlyChangesColour)
{
    panel->subCodeText->setProperty("tag", 0);
    setStates(*panel, { 0, 1, 0 });
    panel->subCodeTextEnabled();
    EXPECT_EQ(pde::textColor(panel->subCodeText), pde::grayColor());
    EXPECT_FALSE(panel->subCodeText->isReadOnly());
    EXPECT_TRUE(pde::isSelectable(panel->subCodeText));

    pde::setButtonState(panel->subCodeCB, 1);
    panel->subCodeTextEnabled();
    EXPECT_EQ(pde::textColor(panel->subCodeText), pde::blackColor());
}

TEST_F(ControlsTest, SetUpGivesPadlocksAndOneFormatterPerField)
{
    const QIcon icon = panel->holdButton->icon();
    EXPECT_EQ(panel->holdButton->iconSize(), QSize(18, 18));
    const QImage off = icon.pixmap(QSize(18, 18), 1.0, QIcon::Normal, QIcon::Off).toImage();
    const QImage on = icon.pixmap(QSize(18, 18), 1.0, QIcon::Normal, QIcon::On).toImage();
    EXPECT_FALSE(off.isNull());
    EXPECT_FALSE(on.isNull());
    EXPECT_NE(off, on);

    auto *mainFormatter = dynamic_cast<JpCoNuratPrintPdeQr7150kBCMyRomanFilter *>(
        pde::FormatterValidator::formatter(panel->mainCodeText));
    auto *subFormatter = dynamic_cast<JpCoNuratPrintPdeQr7150kBCMyRomanFilter *>(
        pde::FormatterValidator::formatter(panel->subCodeText));
    ASSERT_NE(mainFormatter, nullptr);
    ASSERT_NE(subFormatter, nullptr);
    EXPECT_NE(mainFormatter, subFormatter);
    EXPECT_EQ(mainFormatter->maxValue, 32);
    EXPECT_EQ(subFormatter->maxValue, 32);
    EXPECT_EQ(mainFormatter->format(), QStringLiteral("##0"));
}

TEST_F(ControlsTest, SecondSetUpChangesNothing)
{
    buildPanel(QLocale(QLocale::Japanese, QLocale::Japan));
    const QString localizedBox = panel->billingCodeBox->title();
    pde::Formatter *formatter = pde::FormatterValidator::formatter(panel->mainCodeText);
    // Titles that would translate again if the set-up ran twice.
    panel->mainCodeCB->setText(QStringLiteral("Main Code:"));
    panel->holdButton->setIcon(QIcon());

    panel->initializeUI();
    panel->panelView();

    EXPECT_EQ(panel->billingCodeBox->title(), localizedBox);
    EXPECT_EQ(panel->mainCodeCB->text(), QStringLiteral("Main Code:"));
    EXPECT_TRUE(panel->holdButton->icon().isNull());
    EXPECT_EQ(pde::FormatterValidator::formatter(panel->mainCodeText), formatter);
    EXPECT_EQ(panel->mainCodeText->findChildren<pde::FormatterValidator *>().size(), 1);
}

TEST(AbsentControlsTest, EveryOperationToleratesAMissingView)
{
    JpCoNuratPrintPdeQr7150kBC panel(std::make_shared<pdetest::TestCallback>());
    panel.initializeUI();
    EXPECT_EQ(panel.hasInited, 1);
    panel.subCodeCBProc(nullptr);
    panel.mainCodeCBProc(nullptr);
    panel.holdButtonProc(nullptr);
    EXPECT_TRUE(panel.localizedStringValue(QVariant::fromValue<QObject *>(nullptr)).isNull());
    EXPECT_TRUE(panel.localizedStringValue(QVariant::fromValue(panel.mainCodeCB.data())).isNull());
}

} // namespace
} // namespace uitest
