// The print dialog on a real (virtual) display: --screenshot brings the Billing
// Code tab forward, clicks and types into its controls as a user would (each
// must be visible and usable), saves the window as a PNG and cancels.

#include "tests/host/PdeprintProcess.h"
#include "tests/support/PrivateScheduler.h"

#include <QFile>
#include <QImage>

#include <gtest/gtest.h>

using namespace hosttest;

TEST(Dialog, ScreenshotOfTheBillingCodeTabAfterUsingItsControls)
{
    ASSERT_NE(qgetenv("QT_QPA_PLATFORM"), "offscreen") << "run under xvfb-run with the xcb platform";
    pdetest::PrivateScheduler scheduler; // a real queue: its name and type show
    ASSERT_EQ(scheduler.start({ .queues = { { "office", false, {} } } }), QString());
    const QString png = QStringLiteral(PDE_HOST_TEST_OUTPUT_DIR "/billing-code-tab.png");
    QFile::remove(png);
    const RunResult result = runPdeprint({ "--screenshot", png, "--dry-run", "--printer", "office", "--click",
                                           "mainCodeCB", "--type", "mainCodeText=42", "--click", "holdButton",
                                           sampleText() });
    EXPECT_EQ(result.exitCode, 0) << qPrintable(result.err);
    EXPECT_TRUE(result.out.isEmpty()) << "a cancelled dialog prints no ticket: " << qPrintable(result.out);
    const QImage image(png);
    EXPECT_TRUE(image.width() > 300 && image.height() > 200) << qPrintable(png);
}
