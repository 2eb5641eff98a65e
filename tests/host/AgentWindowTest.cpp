// The agent's windows on a real (virtual) display, driven in-process: jobs
// printed with lp to a holding queue each get a window, another user's none;
// the keyboard starts at the first usable control and Tab reads on; Return
// releases one with the ticket, Escape leaves one held, Cancel Job cancels
// one, and a job cancelled elsewhere closes its window without anything
// sent. With the codes kept, the next job is released without a window, but
// one from another host gets a window that names it. Then the codes window
// unlocks them, so that --release-kept leaves the next job held. A job
// another agent released after this one read it gets no second ticket. In
// Japanese, no window, nor pdeprint's dialog, shows an English word.

#include "host/CupsQueue.h"
#include "host/DialogDriver.h"
#include "host/HostTranslations.h"
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
#include "host/printer/Destination.h"
#include "host/printer/PrinterPanels.h"
#include "tests/host/PdeprintProcess.h"
#include "tests/support/CupsJobs.h"
#include "tests/support/PrivateScheduler.h"

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>
#include <QPrintDialog>
#include <QRegularExpression>
#include <QTabBar>
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

// Where a key pressed in the window goes.
QWidget *focused(QWidget *window)
{
    return window->focusWidget() ? window->focusWidget() : window;
}

QString focusName(QWidget *window)
{
    return window->focusWidget() ? window->focusWidget()->objectName() : QString();
}

// The Latin words a person can see in the window, on any tab, but for the given names.
QStringList latinWords(QWidget *window, const QStringList &names)
{
    QStringList texts { window->windowTitle() };
    for (QWidget *widget : window->findChildren<QWidget *>()) {
        if (qobject_cast<QLineEdit *>(widget)) // the user's text
            continue;
        for (const char *property : { "text", "title", "toolTip", "currentText" })
            texts << widget->property(property).toString();
        if (auto *tabs = qobject_cast<QTabBar *>(widget))
            for (int i = 0; i < tabs->count(); ++i)
                texts << tabs->tabText(i);
    }
    QStringList words;
    for (const QRegularExpressionMatch &word : QRegularExpression("[A-Za-z]{2,}").globalMatch(texts.join(' '))) {
        if (!names.contains(word.captured()))
            words << word.captured();
    }
    return words;
}

} // namespace

TEST(AgentWindows, MouseAndKeysReleaseCancelOrLeaveJobsHeldAndJapaneseShowsNoEnglish)
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
    const int escaped = lp("held", nullptr, { "-o", "raw", "-o", "job-billing=55" });
    ASSERT_TRUE(QTest::qWaitFor([&] { return windows.windows().size() == 4; }, 20000)) << qPrintable(said);
    const QList<HeldJobWindow *> opened = windows.windows(); // by job id: printed, cancelled, gone, escaped

    HeldJobWindow *window = opened[0];
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
    EXPECT_EQ(window->windowTitle(), "Billing Code — sample.txt on held");
    EXPECT_EQ(focusName(window), "mainCodeCB");
    EXPECT_EQ(focusName(opened[3]), "mainCodeText") << "its code came with the job";
    press(window, "mainCodeCB");
    press(window, "subCodeCB");
    window->findChild<QWidget *>(QStringLiteral("mainCodeCB"))->setFocus();
    for (const char *next : { "mainCodeText", "subCodeCB", "subCodeText", "holdButton" }) {
        QTest::keyClick(focused(window), Qt::Key_Tab);
        EXPECT_EQ(focusName(window), next);
    }

    auto *mainCode = window->findChild<QLineEdit *>(QStringLiteral("mainCodeText"));
    mainCode->setFocus();
    QTest::keyClicks(mainCode, "77AB");
    QTest::keyClicks(window->findChild<QLineEdit *>(QStringLiteral("subCodeText")), "9");
    press(window, "holdButton");
    const QString png = QStringLiteral(PDE_HOST_TEST_OUTPUT_DIR "/agent-window.png");
    EXPECT_TRUE(window->grab().save(png, "PNG")) << qPrintable(png);
    QTest::keyClick(focused(window), Qt::Key_Return);
    QTest::keyClick(focused(opened[3]), Qt::Key_Escape);
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
    EXPECT_EQ(pdetest::jobState(escaped), IPP_JSTATE_HELD);
    EXPECT_TRUE(scheduler.recordedOptions(escaped).isEmpty());

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
    EXPECT_EQ(focusName(&codes), "holdButton") << "the kept codes are locked";
    press(&codes, "holdButton");
    QTest::keyClick(focused(&codes), Qt::Key_Return);
    EXPECT_TRUE(codes.saved());
    const int next = lp("held");
    const hosttest::RunResult kept = hosttest::runPdeprint({ "--release-kept" });
    EXPECT_TRUE(kept.out.contains(QStringLiteral("job %1 on held left held").arg(next))) << qPrintable(kept.out + kept.err);

    // Another agent released it after this one read it.
    const std::optional<HeldJob> stale = fetchJob(cups->http(), lp("held"), &error);
    ASSERT_TRUE(stale && releaseJob(cups->http(), stale->id, {}, &error)) << qPrintable(error);
    EXPECT_EQ(releaseHeadless(plugins, *cups, *stale, {}, out, &error), ReleaseOutcome::Failed);
    EXPECT_TRUE(error.contains("no longer held")) << qPrintable(error);

    // In Japanese, the next job's window, the codes window and pdeprint's
    // dialog show no English word of ours or of Qt's; each saved as a PNG.
    QLocale::setDefault(QLocale(QLocale::Japanese, QLocale::Japan));
    const HostTranslations translations;
    const int japanese = lp("held");
    ASSERT_TRUE(QTest::qWaitFor([&] { return windows.windows().size() == 2 && windows.windows().last()->jobId() == japanese; }, 20000))
        << qPrintable(said);
    CodesWindow codesJa(JobPanelSession::open(plugins, *cups, noJob, &error));
    Options options;
    options.printer = noJob.queue;
    options.files = QStringList { hosttest::sampleText() };
    Destination destination;
    ASSERT_TRUE(findDestination(options, &destination, &error)) << qPrintable(error);
    std::unique_ptr<PrinterPanels> panels =
        PrinterPanels::create(plugins, destination.printer, std::move(destination.ppd), options, &error);
    ASSERT_TRUE(panels) << qPrintable(error);
    DialogDriver dialog(panels->session(), noJob.queue, options, {});
    dialog.prepare();
    const QStringList names { "held", "sample", "txt", "Nurat", "QR", "pdeprint" }; // queue, job, printer type
    const std::pair<const char *, QWidget *> looks[] = { { "billing-code-tab-ja.png", dialog.dialog() },
        { "agent-window-ja.png", windows.windows().last() }, { "codes-window-ja.png", &codesJa } };
    for (const auto &[file, window] : looks) {
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window)) << file;
        EXPECT_EQ(latinWords(window, names), QStringList()) << file;
        EXPECT_TRUE(window->grab().save(QStringLiteral(PDE_HOST_TEST_OUTPUT_DIR "/") + file, "PNG")) << file;
    }
}
