// The agent's windows on a real (virtual) display, driven in-process: jobs
// printed with lp to a holding queue each get a window, another user's none;
// Print releases one with the ticket, Cancel Job cancels one, and a job
// cancelled elsewhere closes its window without anything sent. With the codes
// kept, the next job is released without a window. Then the codes window
// unlocks them, so that --release-kept leaves the next job held. A job
// another agent released after this one read it gets no second ticket.

#include "host/CupsQueue.h"
#include "host/PluginLoader.h"
#include "host/agent/HeadlessRelease.h"
#include "host/agent/HeldJobAgent.h"
#include "host/agent/JobPanelSession.h"
#include "host/agent/ServedQueues.h"
#include "host/agent/cups/JobRequests.h"
#include "host/agent/ui/CodesWindow.h"
#include "host/agent/ui/DesktopNotifier.h"
#include "host/agent/ui/HeldJobWindow.h"
#include "host/agent/ui/JobWindows.h"
#include "tests/host/PdeprintProcess.h"
#include "tests/support/CupsJobs.h"
#include "tests/support/PrivateScheduler.h"

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

#include <gtest/gtest.h>

using namespace pdeprint;
using pdetest::lp;

namespace {

void press(QWidget *window, const char *button)
{
    auto *found = window->findChild<QAbstractButton *>(QString::fromLatin1(button));
    ASSERT_TRUE(found && found->isVisible() && found->isEnabled()) << button;
    QTest::mouseClick(found, Qt::LeftButton);
}

} // namespace

TEST(AgentWindows, PrintReleasesWithTheTicketCancelJobCancelsAndAJobGoneElsewhereClosesItsWindow)
{
    ASSERT_NE(qgetenv("QT_QPA_PLATFORM"), "offscreen") << "run under xvfb-run with the xcb platform";
    qunsetenv("DBUS_SESSION_BUS_ADDRESS"); // no notifications on the developer's desktop
    pdetest::PrivateScheduler scheduler;
    const QString started = scheduler.start({ .queues = { { "held", true, {} } } });
    ASSERT_TRUE(started.isEmpty()) << qPrintable(started);

    QStringList warnings;
    const std::vector<LoadedPlugin> plugins = loadPlugins(pluginSearchPath({}), &warnings);
    QString error;
    std::unique_ptr<CupsConnection> cups = CupsConnection::open(&error);
    ASSERT_TRUE(cups) << qPrintable(error);
    ServedQueues queues({ "held" }, {});
    DesktopNotifier notifier;
    QString said;
    QTextStream out(&said);
    JobWindows windows(plugins, *cups, notifier, true, out, out);
    HeldJobAgent agent(*cups, queues, windows, out, 100);
    windows.setAgent(&agent);
    agent.start();

    lp("held", "alice"); // another user's: no window, although its events arrive
    const int printed = lp("held"), cancelled = lp("held"), gone = lp("held");
    ASSERT_TRUE(QTest::qWaitFor([&] { return windows.windows().size() == 3; }, 20000)) << qPrintable(said);
    const QList<HeldJobWindow *> opened = windows.windows(); // by job id: printed, cancelled, gone

    HeldJobWindow *window = opened[0];
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
    EXPECT_EQ(window->windowTitle(), "Billing Code — sample.txt on held");
    press(window, "mainCodeCB");
    QTest::keyClicks(window->findChild<QLineEdit *>(QStringLiteral("mainCodeText")), "77AB");
    press(window, "holdButton");
    const QString png = QStringLiteral(PDE_HOST_TEST_OUTPUT_DIR "/agent-window.png");
    EXPECT_TRUE(window->grab().save(png, "PNG")) << qPrintable(png);
    press(window, "printButton");
    press(opened[1], "cancelJobButton");
    ASSERT_EQ(QProcess::execute(QStringLiteral("cancel"), { QString::number(gone) }), 0);

    ASSERT_TRUE(QTest::qWaitFor([&] { return windows.windows().isEmpty(); }, 20000)) << qPrintable(said);
    EXPECT_EQ(scheduler.received(printed).value(pdetest::kTicketPrefix + "bc.mainCode"), "37374142");
    for (int job : { cancelled, gone }) {
        EXPECT_EQ(pdetest::jobState(job), IPP_JSTATE_CANCELED) << job;
        EXPECT_TRUE(scheduler.recordedOptions(job).isEmpty()) << job;
    }
    EXPECT_TRUE(said.contains(QStringLiteral("job %1 on held was cancelled, released or finished elsewhere").arg(gone)))
        << qPrintable(said);

    const int released = lp("held"); // the codes are kept now: released at once, no window
    EXPECT_TRUE(QTest::qWaitFor([&] { return scheduler.recordedOptions(released).contains("37374142"); }, 20000));
    // Kept codes or not, a job from another host gets a window that says so.
    const int remote = lp("held", nullptr, { "-o", "raw", "-o", "job-originating-host-name=desk7.example" });
    ASSERT_TRUE(QTest::qWaitFor([&] { return windows.windows().size() == 1; }, 20000)) << qPrintable(said);
    auto *origin = windows.windows().first()->findChild<QLabel *>(QStringLiteral("origin"));
    EXPECT_TRUE(origin && origin->text().contains("desk7.example"));
    windows.windows().first()->close();
    EXPECT_EQ(pdetest::jobState(remote), IPP_JSTATE_HELD);

    // The codes were kept; the padlock opened in the codes window ends that.
    HeldJob noJob;
    noJob.queue = QStringLiteral("held");
    std::unique_ptr<JobPanelSession> session = JobPanelSession::open(plugins, *cups, noJob, &error);
    ASSERT_TRUE(session) << qPrintable(error);
    CodesWindow codes(std::move(session));
    codes.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&codes));
    press(&codes, "holdButton");
    press(&codes, "saveButton");
    EXPECT_TRUE(codes.saved());
    const int next = lp("held");
    const hosttest::RunResult kept = hosttest::runPdeprint({ "--release-kept" });
    EXPECT_TRUE(kept.out.contains(QStringLiteral("job %1 on held left held").arg(next))) << qPrintable(kept.out + kept.err);

    // Another agent released it after this one read it.
    const std::optional<HeldJob> stale = fetchJob(cups->http(), lp("held"), &error);
    ASSERT_TRUE(stale && releaseJob(cups->http(), stale->id, {}, &error)) << qPrintable(error);
    EXPECT_EQ(releaseHeadless(plugins, *cups, *stale, {}, out, &error), ReleaseOutcome::Failed);
    EXPECT_TRUE(error.contains("no longer held")) << qPrintable(error);
}
