#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"

#include "platform/ButtonState.h"
#include "tests/support/TestSupport.h"

#include <QPointer>

#include <gtest/gtest.h>

namespace {

using pdetest::ConstraintTestCallback;
using pdetest::TestCallback;
using Panel = JpCoNuratPrintPdeQr7150kBC;

class PanelTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(sample);
    }
    std::shared_ptr<ConstraintTestCallback> host() { return std::make_shared<ConstraintTestCallback>(sample.get()); }

    pdetest::PpdPtr sample = pdetest::openPpd(pdetest::samplePpdPath());
};

// Only a PPD through constraint handling and a current printer give a queue's domain.
TEST_F(PanelTest, CreationDecodesTheModelAndNamesTheQueuesDomain)
{
    const pde::Printer office { QStringLiteral("office"), QString() }, duplex { QStringLiteral("office"), QStringLiteral("duplex") };
    const struct { const char *file; bool constraints; std::optional<pde::Printer> printer;
                   const char16_t *model; const char *domain; } cases[] = {
        { "nurat-sjis.ppd", true, office, u"ヌラト 複合機 QR7150K 表", "jp.co.nurat.mfp.office" },
        { "nurat-utf8.ppd", true, office, u"Nurat QR7150K Ü", "jp.co.nurat.mfp.office" },
        { "nurat-noencoding.ppd", true, duplex, u"Nurat QR7150K", "jp.co.nurat.mfp.office/duplex" },
        { "nurat-noencoding.ppd", true, std::nullopt, u"Nurat QR7150K", nullptr },
        { "nurat-noencoding.ppd", false, office, nullptr, nullptr },
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::Message() << c.file << (c.constraints ? "" : " without constraints") << (c.printer ? "" : " without printer"));
        const auto ppd = pdetest::openPpd(pdetest::testDataPath(QString::fromLatin1(c.file)));
        auto host = c.constraints ? std::make_shared<ConstraintTestCallback>(ppd.get()) : std::make_shared<TestCallback>(ppd.get());
        host->session.setCurrentPrinter(c.printer);
        Panel panel(host);
        EXPECT_EQ(panel.modelStringRef, c.model ? QString::fromUtf16(c.model) : QString());
        EXPECT_EQ(panel.preferenceName, c.domain ? QString::fromLatin1(c.domain) : QString());
    }
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
    EXPECT_TRUE(cancelled.shouldPrint());
    EXPECT_FALSE(pdetest::readRecord().contains("Main Code"));
}

TEST_F(PanelTest, SummaryListsSwitchedOnCodesUnderTheirTitles)
{
    Panel panel(host());
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
