#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"

#include "platform/ButtonState.h"
#include "tests/support/TestSupport.h"

#include <QPointer>

#include <gtest/gtest.h>

namespace {

using pdetest::ConstraintTestCallback;
using pdetest::TestCallback;
using Panel = JpCoNuratPrintPdeQr7150kBC;

const QString kDomain = QString::fromLatin1(pdetest::kSampleDomain);

class PanelTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        pdetest::writeDomain(std::nullopt);
        ASSERT_TRUE(sample);
    }
    std::shared_ptr<ConstraintTestCallback> host() { return std::make_shared<ConstraintTestCallback>(sample.get()); }

    pdetest::PpdPtr sample = pdetest::openPpd(pdetest::samplePpdPath());
};

TEST_F(PanelTest, CreationDecodesTheModelAndNamesTheQueuesDomain)
{
    const struct { const char *file; pde::StringEncoding encoding; const char16_t *model; } cases[] = {
        { "nurat-sjis.ppd", pde::kStringEncodingShiftJIS, u"ヌラト 複合機 QR7150K 表" },
        { "nurat-utf8.ppd", pde::kStringEncodingUTF8, u"Nurat QR7150K Ü" },
        { "nurat-lowercase-utf8.ppd", pde::kStringEncodingMacRoman, u"Nurat QR7150K" },
        { "nurat-noencoding.ppd", pde::kStringEncodingMacRoman, u"Nurat QR7150K" },
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.file);
        const auto ppd = pdetest::openPpd(pdetest::testDataPath(QString::fromLatin1(c.file)));
        ASSERT_TRUE(ppd);
        Panel panel(std::make_shared<ConstraintTestCallback>(ppd.get()));
        EXPECT_EQ(panel.ppdEncoding, c.encoding);
        EXPECT_EQ(panel.modelStringRef, QString::fromUtf16(c.model));
        EXPECT_EQ(panel.preferenceName, kDomain);
    }
    auto withInstance = host();
    withInstance->session.setCurrentPrinter(pde::Printer { QStringLiteral("office"), QStringLiteral("duplex") });
    EXPECT_EQ(Panel(withInstance).preferenceName, QStringLiteral("jp.co.nurat.mfp.office/duplex"));
    // No current printer: no queue to keep preferences for.
    withInstance->session.setCurrentPrinter(std::nullopt);
    EXPECT_TRUE(Panel(withInstance).preferenceName.isNull());
}

TEST_F(PanelTest, WithoutAPpdThereIsNoModelAndNoDomainToTouch)
{
    const QVariantMap record { { "Model Name", "Nurat QR7150K" }, { "Release Number", "1.00" }, { "hold button", 1 } };
    pdetest::writeDomain(QVariantMap { { "Billing Code", record } });
    // A host without constraint handling has no call for the session's PPD.
    for (const std::shared_ptr<TestCallback> &host : std::initializer_list<std::shared_ptr<TestCallback>> {
             std::make_shared<TestCallback>(sample.get()), std::make_shared<ConstraintTestCallback>(nullptr) }) {
        Panel panel(host);
        EXPECT_TRUE(panel.preferenceName.isNull() && panel.modelStringRef.isNull());
        EXPECT_EQ(panel.prefHoldButtonFlag, 0u);
        EXPECT_TRUE(panel.restoreValuesAndReturnError(nullptr) && panel.saveValuesAndReturnError(nullptr));
        EXPECT_TRUE(panel.shouldPrint());
    }
    EXPECT_EQ(pdetest::readRecord().keys(), record.keys());
}

// A view the host asks for before any restore is the host's from the start (see the lifecycle fault test).
TEST_F(PanelTest, RestoreFirstLoadsTheViewAndOwnsItUntilAHostTakesIt)
{
    QWidget dialog;
    QPointer<QWidget> view, taken;
    {
        Panel panel(host()), parented(host());
        EXPECT_TRUE(panel.restoreValuesAndReturnError(nullptr));
        view = panel.panelView_;
        ASSERT_TRUE(view);
        EXPECT_EQ(panel.panelView(), view.data()) << "asked again, the host gets the same view";

        parented.restoreValuesAndReturnError(nullptr);
        taken = parented.panelView();
        taken->setParent(&dialog);
    }
    EXPECT_FALSE(view) << "a view nobody took goes with the panel";
    EXPECT_TRUE(taken && taken->parent() == &dialog);
}

TEST_F(PanelTest, ShouldPrintMakesUpForASkippedRestoreAndSaveOnlyAndStoresOnlyWithATicket)
{
    auto driven = host(), skipped = host();
    Panel byHost(driven), byPanel(skipped);
    byHost.restoreValuesAndReturnError(nullptr);
    byHost.saveValuesAndReturnError(nullptr);
    EXPECT_TRUE(byPanel.shouldPrint());
    EXPECT_FALSE(skipped->settings.keys().isEmpty());
    EXPECT_EQ(skipped->settings.keys(), driven->settings.keys());

    // What the host did is not repeated: a view it threw away stays away, a ticket it cleared stays clear.
    delete byHost.panelView_.data();
    for (const QString &key : driven->settings.keys())
        driven->settings.setValue(key, std::nullopt);
    EXPECT_TRUE(byHost.shouldPrint());
    EXPECT_FALSE(byHost.panelView_);
    EXPECT_TRUE(driven->settings.keys().isEmpty());

    // The record is stored on the way to a ticket only (with one, see the exchange tests).
    pdetest::writeDomain(QVariantMap());
    auto noSettings = host();
    noSettings->settingsAvailable = false;
    Panel cancelled(noSettings);
    cancelled.restoreValuesAndReturnError(nullptr);
    pde::setButtonState(cancelled.mainCodeCB, pde::kButtonStateOn);
    cancelled.mainCodeText->setText(QStringLiteral("4321"));
    EXPECT_TRUE(cancelled.shouldPrint());
    EXPECT_FALSE(pdetest::readRecord().contains("Main Code"));
}

TEST_F(PanelTest, SummaryListsSwitchedOnCodesUnderTheirTitles)
{
    Panel panel(host());
    EXPECT_TRUE(panel.summaryInfo().isEmpty()) << "nothing before the controls are set up";
    std::unique_ptr<QWidget> view(panel.panelView());
    panel.mainCodeCB->setText(QStringLiteral("Account:"));
    panel.subCodeCB->setText(QStringLiteral("Project:"));
    const struct { int main, sub; const char *subCode; QVariantMap summary; } cases[] = {
        { pde::kButtonStateOn, pde::kButtonStateOn, "", { { "Account:", "1234" } } },
        { pde::kButtonStateOn, pde::kButtonStateOn, "77", { { "Account:", "1234" }, { "Project:", "77" } } },
        { pde::kButtonStateMixed, pde::kButtonStateOff, "77", {} },
    };
    panel.mainCodeText->setText(QStringLiteral("1234"));
    for (const auto &c : cases) {
        pde::setButtonState(panel.mainCodeCB, c.main);
        pde::setButtonState(panel.subCodeCB, c.sub);
        panel.subCodeText->setText(QString::fromLatin1(c.subCode));
        EXPECT_EQ(panel.summaryInfo(), c.summary) << c.subCode;
    }
}

} // namespace
