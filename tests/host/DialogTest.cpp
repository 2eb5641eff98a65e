// The print dialog on a real (virtual) display: the panel is a tab whose
// controls a user can see, click and type into; --screenshot saves the window.

#include "host/DialogDriver.h"
#include "host/HostCallback.h"
#include "host/PanelSession.h"
#include "host/PluginLoader.h"
#include "host/PreferenceDomains.h"
#include "tests/host/PdeprintProcess.h"
#include "tests/support/TestSupport.h"

#include <QCheckBox>
#include <QImage>
#include <QLineEdit>
#include <QPrintDialog>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

using namespace pdeprint;

namespace {

const QString kPanelName = QStringLiteral("Billing Code");

class DialogTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_NE(qgetenv("QT_QPA_PLATFORM"), "offscreen") << "run under xvfb-run with the xcb platform";
        qputenv("CUPS_SERVER", "127.0.0.1:1"); // no scheduler: the dialog must not wait for one
    }
};

} // namespace

TEST_F(DialogTest, BillingCodeTabShowsUsableControls)
{
    QStringList warnings;
    const std::vector<LoadedPlugin> plugins = loadPlugins(pluginSearchPath({}), &warnings);
    ASSERT_FALSE(plugins.empty()) << qPrintable(warnings.join('\n'));
    pdetest::PpdPtr ppd = pdetest::openPpd(pdetest::samplePpdPath());
    ASSERT_TRUE(ppd);
    QString error;
    ASSERT_TRUE(ensurePreferenceDomains(plugins.front().preferenceDomainPrefixes, "gui", &error));
    auto callback = std::make_shared<HostCallback>(pde::Printer { "gui", {} }, ppd.get());
    PanelSession session(plugins, callback);
    DialogDriver driver(session, QString(), Options());
    driver.prepare();
    QPrintDialog *dialog = driver.dialog();
    dialog->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(dialog));
    ASSERT_TRUE(driver.selectPanelTab(kPanelName));
    session.showPanels();
    QTest::qWait(200);

    auto *mainCodeCB = dialog->findChild<QCheckBox *>("mainCodeCB");
    auto *mainCodeText = dialog->findChild<QLineEdit *>("mainCodeText");
    auto *holdButton = dialog->findChild<QToolButton *>("holdButton");
    ASSERT_TRUE(mainCodeCB && mainCodeText && holdButton) << "the panel's view is a tab of the dialog";
    for (QWidget *control : std::initializer_list<QWidget *> { mainCodeCB, mainCodeText, holdButton })
        EXPECT_TRUE(control->isVisible()) << qPrintable(control->objectName());
    EXPECT_TRUE(mainCodeCB->isEnabled());

    QTest::mouseClick(mainCodeCB, Qt::LeftButton);
    EXPECT_TRUE(mainCodeCB->isChecked());
    ASSERT_TRUE(mainCodeText->isEnabled() && !mainCodeText->isReadOnly()) << "checking the box opens the field";
    mainCodeText->setFocus();
    QTest::keyClicks(mainCodeText, "1234");
    EXPECT_EQ(mainCodeText->text(), QStringLiteral("1234"));
    QTest::qWait(100);

    const QString png = QStringLiteral(PDE_HOST_TEST_OUTPUT_DIR "/billing-code-tab.png");
    EXPECT_TRUE(dialog->grab().save(png, "PNG")) << qPrintable(png);
    dialog->reject();
}

TEST_F(DialogTest, ScreenshotOptionSavesTheShownDialogAndCancelsIt)
{
    QTemporaryDir config;
    QProcessEnvironment environment = hosttest::testEnvironment(config.path());
    environment.insert("DISPLAY", qEnvironmentVariable("DISPLAY"));
    environment.insert("QT_QPA_PLATFORM", qEnvironmentVariable("QT_QPA_PLATFORM"));
    const QString png = QStringLiteral(PDE_HOST_TEST_OUTPUT_DIR "/pdeprint-dialog.png");
    QFile::remove(png);
    const hosttest::RunResult result = hosttest::runPdeprint(
        { "--screenshot", png, "--dry-run", "--ppd", hosttest::samplePpd(), "--printer", "gui", "--click",
          "mainCodeCB", "--type", "mainCodeText=42", hosttest::sampleText() },
        environment);
    EXPECT_EQ(result.exitCode, 0) << qPrintable(result.err);
    EXPECT_TRUE(result.out.isEmpty()) << "a cancelled dialog prints no ticket: " << qPrintable(result.out);
    const QImage image(png);
    ASSERT_FALSE(image.isNull()) << qPrintable(png);
    EXPECT_GT(image.width(), 300);
    EXPECT_GT(image.height(), 200);
}
