#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"
#include "plugin/JpCoNuratPrintPdeQr7150kBCPDEPlugIn.h"
#include "plugin/HostUtilities.h"

#include "platform/ButtonState.h"
#include "platform/DialogTypes.h"
#include "platform/UserDefaults.h"
#include "tests/support/TestSupport.h"

#include <QFile>
#include <QLocale>
#include <QPointer>

#include <gtest/gtest.h>

namespace {

using pdetest::ConstraintTestCallback;
using pdetest::TestCallback;
using Panel = JpCoNuratPrintPdeQr7150kBC;

const QString kDomain = QStringLiteral("jp.co.nurat.mfp.office");
const QString kRecord = QStringLiteral("Billing Code");

void writeDomain(const QVariantMap &domain)
{
    pde::UserDefaults::resetStandardUserDefaults();
    auto defaults = pde::UserDefaults::standardUserDefaults();
    defaults->setPersistentDomain(domain, kDomain);
    ASSERT_TRUE(defaults->synchronize());
    pde::UserDefaults::resetStandardUserDefaults();
}

QVariantMap readRecord()
{
    pde::UserDefaults::resetStandardUserDefaults();
    return pde::UserDefaults::standardUserDefaults()->persistentDomainForName(kDomain).value_or(QVariantMap())
        .value(kRecord).toMap();
}

class PanelTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QFile::remove(pde::UserDefaults::fileNameForDomain(kDomain));
        sample = pdetest::openPpd(pdetest::samplePpdPath());
        ASSERT_TRUE(sample);
    }
    void TearDown() override
    {
        QFile::remove(pde::UserDefaults::fileNameForDomain(kDomain));
        setOsReleasePath(QString::fromLatin1(kDefaultOsReleasePath));
        QLocale::setDefault(savedLocale);
    }
    std::shared_ptr<ConstraintTestCallback> hostWithPpd()
    {
        return std::make_shared<ConstraintTestCallback>(sample.get());
    }

    pdetest::PpdPtr sample;
    QLocale savedLocale;
};

TEST_F(PanelTest, FactoryAnswersOnePanelForThePrintDialogOnly)
{
    JpCoNuratPrintPdeQr7150kBCPDEPlugIn factory;
    EXPECT_TRUE(factory.initWithBundle(nullptr));
    auto host = hostWithPpd();

    auto panels = factory.PDEPanelsForType(QString::fromLatin1(pde::kPrintDialogType), host);
    ASSERT_TRUE(panels);
    ASSERT_EQ(panels->size(), 1u);
    EXPECT_NE(dynamic_cast<Panel *>(panels->front().get()), nullptr);
    // The panel holds the host's callback; the factory holds nothing.
    EXPECT_EQ(host.use_count(), 2);
    panels.reset();
    EXPECT_EQ(host.use_count(), 1);

    for (const QString &type : { QStringLiteral("page setup"), QStringLiteral("bdb091f4-e57f-11d3-b5cc-0050e4603277"),
                                 QString() }) {
        const auto none = factory.PDEPanelsForType(type, host);
        ASSERT_TRUE(none) << type.toStdString();
        EXPECT_TRUE(none->empty()) << type.toStdString();
    }
}

TEST_F(PanelTest, CreationDecodesTheModelInThePpdsEncoding)
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
        EXPECT_TRUE(panel.useConstraintHandling);
        EXPECT_EQ(panel.ppd, ppd.get());
        EXPECT_EQ(panel.ppdEncoding, c.encoding);
        EXPECT_EQ(panel.modelStringRef, QString::fromUtf16(c.model));
        EXPECT_EQ(panel.preferenceName, kDomain);
        EXPECT_EQ(panel.systemEncoding, pde::systemStringEncoding());
    }
}

TEST_F(PanelTest, PreferenceDomainNamesTheQueueAndItsInstance)
{
    auto host = hostWithPpd();
    host->session.setCurrentPrinter(pde::Printer { QStringLiteral("office"), QStringLiteral("duplex") });
    EXPECT_EQ(Panel(host).preferenceName, QStringLiteral("jp.co.nurat.mfp.office/duplex"));

    // No current printer: no queue to keep preferences for.
    host->session.setCurrentPrinter(std::nullopt);
    Panel noPrinter(host);
    EXPECT_TRUE(noPrinter.preferenceName.isNull());
    EXPECT_EQ(noPrinter.modelStringRef, QStringLiteral("Nurat QR7150K"));
}

TEST_F(PanelTest, WithoutAPpdThereIsNoModelAndNoDomain)
{
    const QVariantMap stored { { kRecord, QVariantMap { { QStringLiteral("Model Name"), QStringLiteral("Nurat QR7150K") },
                                                        { QStringLiteral("Release Number"), QStringLiteral("1.00") },
                                                        { QStringLiteral("hold button"), 1 } } } };
    writeDomain(stored);
    // A host without constraint handling: this platform has no legacy call for the session's PPD.
    auto legacyHost = std::make_shared<TestCallback>(sample.get());
    auto emptyHost = std::make_shared<ConstraintTestCallback>(nullptr);
    for (const std::shared_ptr<TestCallback> &host : { std::shared_ptr<TestCallback>(legacyHost),
                                                      std::shared_ptr<TestCallback>(emptyHost) }) {
        auto panel = std::make_unique<Panel>(host);
        EXPECT_EQ(panel->ppd, nullptr);
        EXPECT_TRUE(panel->preferenceName.isNull());
        EXPECT_TRUE(panel->modelStringRef.isNull());
        EXPECT_EQ(panel->prefHoldButtonFlag, 0u);
        EXPECT_TRUE(panel->restoreValuesAndReturnError(nullptr));
        EXPECT_TRUE(panel->saveValuesAndReturnError(nullptr));
        EXPECT_TRUE(panel->shouldPrint());
        panel.reset();
        EXPECT_EQ(host.use_count(), 2);
    }
    EXPECT_EQ(readRecord().value(QStringLiteral("hold button")).toInt(), 1);
    EXPECT_EQ(readRecord().keys(), stored.value(kRecord).toMap().keys());
}

TEST_F(PanelTest, CreationChecksTheRecordBeforeLoadingIt)
{
    const auto sjis = pdetest::openPpd(pdetest::testDataPath(QStringLiteral("nurat-sjis.ppd")));
    ASSERT_TRUE(sjis);
    const auto domainFor = [](const QString &model) {
        return QVariantMap { { kRecord, QVariantMap { { QStringLiteral("Model Name"), model },
                                                      { QStringLiteral("Release Number"), QStringLiteral("1.00") },
                                                      { QStringLiteral("Main Code CheckBox"), true },
                                                      { QStringLiteral("Main Code"), QStringLiteral("1234") },
                                                      { QStringLiteral("hold button"), 1 } } } };
    };

    // The record of this very model (its name as the Shift_JIS PPD gives it) is loaded.
    writeDomain(domainFor(QStringLiteral("ヌラト 複合機 QR7150K 表")));
    {
        Panel panel(std::make_shared<ConstraintTestCallback>(sjis.get()));
        EXPECT_EQ(panel.prefHoldButtonFlag, 1u);
        EXPECT_EQ(panel.prefMainCodeStringRef.toString(), QStringLiteral("1234"));
    }
    // Another model's record is reset first, so nothing of it is pending.
    writeDomain(domainFor(QStringLiteral("Nurat QR7150K")));
    {
        Panel panel(std::make_shared<ConstraintTestCallback>(sjis.get()));
        EXPECT_EQ(panel.prefHoldButtonFlag, 0u);
        EXPECT_FALSE(panel.prefMainCodeStringRef.isValid());
    }
}

TEST_F(PanelTest, ResizingFollowsTheSystemVersion)
{
    setOsReleasePath(pdetest::testDataPath(QStringLiteral("os-release-10.5")));
    EXPECT_TRUE(Panel(hostWithPpd()).canResizeView);
    setOsReleasePath(pdetest::testDataPath(QStringLiteral("os-release-none")));
    EXPECT_FALSE(Panel(hostWithPpd()).canResizeView);
}

TEST_F(PanelTest, NameKindAndKeys)
{
    QLocale::setDefault(QLocale(QStringLiteral("en_US")));
    EXPECT_EQ(Panel(hostWithPpd()).panelName(), QStringLiteral("Billing Code"));

    // The name is looked up once: a later change of locale does not reach it.
    QLocale::setDefault(QLocale(QStringLiteral("ja_JP")));
    Panel panel(hostWithPpd());
    EXPECT_EQ(panel.panelName(), QStringLiteral("部門コード"));
    QLocale::setDefault(QLocale(QStringLiteral("en_US")));
    EXPECT_EQ(panel.panelName(), QStringLiteral("部門コード"));

    EXPECT_EQ(panel.panelKind(), QStringLiteral("jp.co.nurat.print.pde.qr7150k.BillingCodeKind"));
    EXPECT_EQ(panel.supportedPPDOptionKeys(), (QStringList { QStringLiteral("ARMainCode"), QStringLiteral("ARSubCode") }));
    EXPECT_TRUE(panel.shouldHide());
    EXPECT_TRUE(panel.shouldShowHelp());
}

TEST_F(PanelTest, RestoreFirstLoadsTheViewAndOwnsItUntilAHostTakesIt)
{
    QPointer<QWidget> view;
    {
        Panel panel(hostWithPpd());
        QString error = QStringLiteral("untouched");
        EXPECT_TRUE(panel.restoreValuesAndReturnError(&error));
        EXPECT_EQ(error, QStringLiteral("untouched"));
        EXPECT_TRUE(panel.isPanelViewRetain);
        EXPECT_TRUE(panel.hasInited);
        EXPECT_TRUE(panel.callRestoreValuesFunction);
        view = panel.panelView_;
        ASSERT_TRUE(view);
        EXPECT_TRUE(panel.mainCodeCB && panel.mainCodeText && panel.subCodeCB && panel.subCodeText
                    && panel.holdButton && panel.billingCodeBox);
        // Asked again, the host gets the same view.
        EXPECT_EQ(panel.panelView(), view.data());
    }
    EXPECT_FALSE(view) << "a view nobody took goes with the panel";

    QWidget dialog;
    {
        Panel panel(hostWithPpd());
        panel.restoreValuesAndReturnError(nullptr);
        view = panel.panelView();
        view->setParent(&dialog);
    }
    EXPECT_TRUE(view) << "a view the host parented is the host's";
    EXPECT_EQ(view->parent(), &dialog);
}

TEST_F(PanelTest, ViewFromTheHostFirstIsTheHosts)
{
    QPointer<QWidget> view;
    {
        Panel panel(hostWithPpd());
        view = panel.panelView();
        ASSERT_TRUE(view);
        EXPECT_TRUE(panel.hasInited);
        EXPECT_TRUE(panel.restoreValuesAndReturnError(nullptr));
        EXPECT_FALSE(panel.isPanelViewRetain);
        EXPECT_EQ(panel.panelView_.data(), view.data());
    }
    ASSERT_TRUE(view);
    delete view.data();
}

TEST_F(PanelTest, ShouldPrintMakesUpForWhatTheHostSkipped)
{
    Panel panel(hostWithPpd());
    EXPECT_TRUE(panel.shouldPrint());
    EXPECT_TRUE(panel.callRestoreValuesFunction);
    EXPECT_TRUE(panel.callSaveValuesFunction);
    EXPECT_TRUE(panel.hasInited);
    EXPECT_TRUE(panel.isPanelViewRetain) << "the restore loaded the view";

    // A restore the host did is not repeated: a view the host threw away stays away.
    Panel restored(hostWithPpd());
    restored.restoreValuesAndReturnError(nullptr);
    delete restored.panelView_.data();
    EXPECT_TRUE(restored.shouldPrint());
    EXPECT_FALSE(restored.panelView_);
    EXPECT_TRUE(restored.callSaveValuesFunction);
}

TEST_F(PanelTest, ShouldPrintWritesTheSameKeysAsAHostDrivenSave)
{
    auto driven = hostWithPpd();
    Panel byHost(driven);
    byHost.restoreValuesAndReturnError(nullptr);
    byHost.saveValuesAndReturnError(nullptr);

    auto skipped = hostWithPpd();
    Panel byPanel(skipped);
    byPanel.shouldPrint();
    EXPECT_EQ(skipped->settings.keys(), driven->settings.keys());

    // A save the host did is not repeated.
    for (const QString &key : driven->settings.keys())
        driven->settings.setValue(key, std::nullopt);
    byHost.shouldPrint();
    EXPECT_TRUE(driven->settings.keys().isEmpty());
}

TEST_F(PanelTest, ShouldPrintStoresThePreferencesOnlyWithPrintSettings)
{
    writeDomain({ { kRecord, QVariantMap { { QStringLiteral("Model Name"), QStringLiteral("Nurat QR7150K") },
                                           { QStringLiteral("Release Number"), QStringLiteral("1.00") } } },
                  { QStringLiteral("Other"), QStringLiteral("kept") } });
    for (const bool settingsAvailable : { false, true }) {
        SCOPED_TRACE(settingsAvailable);
        auto host = hostWithPpd();
        host->settingsAvailable = settingsAvailable;
        Panel panel(host);
        panel.restoreValuesAndReturnError(nullptr);
        panel.saveValuesAndReturnError(nullptr);
        pde::setButtonState(panel.mainCodeCB, pde::kButtonStateOn);
        panel.mainCodeText->setText(QStringLiteral("4321"));
        EXPECT_TRUE(panel.shouldPrint());
        const QVariantMap record = readRecord();
        if (settingsAvailable) {
            EXPECT_EQ(record.value(QStringLiteral("Main Code")).toString(), QStringLiteral("4321"));
            // Stored, then loaded again.
            EXPECT_EQ(panel.prefMainCodeStringRef.toString(), QStringLiteral("4321"));
        } else {
            EXPECT_FALSE(record.contains(QStringLiteral("Main Code")));
            EXPECT_FALSE(panel.prefMainCodeStringRef.isValid());
        }
    }
}

TEST_F(PanelTest, SummaryListsSwitchedOnCodesUnderTheirTitles)
{
    Panel panel(hostWithPpd());
    EXPECT_TRUE(panel.summaryInfo().isEmpty()) << "nothing before the controls are set up";

    ASSERT_TRUE(panel.panelView());
    std::unique_ptr<QWidget> view(panel.panelView_.data());
    panel.mainCodeCB->setText(QStringLiteral("Account:"));
    panel.subCodeCB->setText(QStringLiteral("Project:"));
    pde::setButtonState(panel.mainCodeCB, pde::kButtonStateOn);
    pde::setButtonState(panel.subCodeCB, pde::kButtonStateOn);
    panel.mainCodeText->setText(QStringLiteral("1234"));
    panel.subCodeText->clear();
    EXPECT_EQ(panel.summaryInfo(), (QVariantMap { { QStringLiteral("Account:"), QStringLiteral("1234") } }));

    panel.subCodeText->setText(QStringLiteral("77"));
    EXPECT_EQ(panel.summaryInfo(), (QVariantMap { { QStringLiteral("Account:"), QStringLiteral("1234") },
                                                  { QStringLiteral("Project:"), QStringLiteral("77") } }));

    pde::setButtonState(panel.mainCodeCB, pde::kButtonStateMixed);
    pde::setButtonState(panel.subCodeCB, pde::kButtonStateOff);
    EXPECT_TRUE(panel.summaryInfo().isEmpty());
}

} // namespace
