// Headless agents, one per user, started together on one private scheduler
// with its stock limits, then jobs submitted at once with lp: every job must
// be released once, by its owner's agent, with its owner's code, and no agent
// may end. Twenty users with ten jobs each overflow the scheduler's event
// store, so the agents must notice the gap and list the jobs again; 150 users
// with a job each are more than its client and subscription limits (100).
// Then a quiet spell: the scheduler's and the agents' CPU, and each agent's
// proportional set size (PSS, what many agents cost the host together).
//
//   pdebench_soak [--users N] [--jobs-per-user N] [--idle-seconds S] [--bus]
//
// With --bus, a private system bus on which the scheduler's notifier wakes
// the agents, as on a desktop host: each agent then asks for two subscriptions.
//
// A scale run (./dev soak, a few seconds on two cores), kept beside the
// benchmarks rather than in the suite: the gap it once exposed is caught there,
// deterministically, by HeldJobs.JobsBeyondTheSchedulersEventStoreAreEachReleasedOnce.

#include "bench/ProcessFigures.h"
#include "bench/PrivateBus.h"
#include "tests/support/CupsJobs.h"
#include "tests/support/PrivateScheduler.h"
#include "tests/support/TestSupport.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>

#include <cstdio>
#include <memory>
#include <vector>

namespace {

constexpr char kQueue[] = "office";
const QString kMainCodeKey = pdetest::kTicketPrefix + "bc.mainCode";

struct User
{
    QString name;
    QString code;
    QTemporaryDir config;
    QProcess agent;
    QList<int> jobs;
};

int failures = 0;

void fail(const QString &what)
{
    ++failures;
    std::fprintf(stderr, "pdebench_soak: %s\n", qPrintable(what));
}

// A field of /proc/<pid>/smaps_rollup, in KiB.
qint64 rollupKb(qint64 pid, const QByteArray &field)
{
    QFile rollup(QStringLiteral("/proc/%1/smaps_rollup").arg(pid));
    if (!rollup.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : rollup.readAll().split('\n')) {
        if (line.startsWith(field + ':'))
            return line.mid(field.size() + 1).trimmed().split(' ').value(0).toLongLong();
    }
    return -1;
}

qint64 median(QList<qint64> values)
{
    std::sort(values.begin(), values.end());
    return values.isEmpty() ? 0 : values[values.size() / 2];
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const int userCount = optionValue(application.arguments(), "--users", 20);
    const int jobsPerUser = optionValue(application.arguments(), "--jobs-per-user", 10);
    const int idleSeconds = optionValue(application.arguments(), "--idle-seconds", 10);
    const bool withBus = application.arguments().contains("--bus");
    PrivateBus bus;
    pdetest::SchedulerOptions options { .queues = { { kQueue, true, {} } } };
    if (withBus) {
        if (const QString error = bus.start(); !error.isEmpty()) {
            fail(error);
            return 1;
        }
        options.filesLines << "SetEnv DBUS_SYSTEM_BUS_ADDRESS " + bus.address();
    }
    pdetest::PrivateScheduler scheduler;
    if (const QString error = scheduler.start(options); !error.isEmpty()) {
        fail(error);
        return 1;
    }
    QElapsedTimer timer;
    timer.start();

    std::vector<std::unique_ptr<User>> users;
    for (int i = 0; i < userCount; ++i) {
        auto user = std::make_unique<User>();
        user->name = QStringLiteral("soak%1").arg(i + 1);
        user->code = QString::number(7000 + i);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("CUPS_USER", user->name);
        environment.insert("XDG_CONFIG_HOME", user->config.path());
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        environment.insert("DBUS_SYSTEM_BUS_ADDRESS", withBus ? bus.address() : QStringLiteral("unix:path=/nonexistent"));
        user->agent.setProcessEnvironment(environment);
        user->agent.setStandardInputFile(QProcess::nullDevice());
        user->agent.start(QStringLiteral(PDEBENCH_PDEPRINT), { "--agent", "--no-dialog", "--click", "mainCodeCB",
                                                               "--type", "mainCodeText=" + user->code });
        users.push_back(std::move(user));
    }

    // Every job at once, each lp its own process.
    std::vector<std::pair<User *, std::unique_ptr<QProcess>>> submissions;
    for (const auto &user : users) {
        for (int j = 0; j < jobsPerUser; ++j) {
            auto lp = std::make_unique<QProcess>();
            lp->start(QStringLiteral("lp"), { "-U", user->name, "-d", kQueue, "-o", "raw",
                                              QStringLiteral(PDE_SOURCE_DIR "/examples/sample.txt") });
            submissions.emplace_back(user.get(), std::move(lp));
        }
    }
    for (auto &[user, lp] : submissions) {
        lp->waitForFinished(60000);
        const int jobId = pdetest::jobIdIn(QString::fromUtf8(lp->readAllStandardOutput()));
        if (jobId > 0)
            user->jobs << jobId;
        else
            fail("lp failed: " + QString::fromUtf8(lp->readAllStandardError()).trimmed());
    }

    // A job reaches the backend once it is released.
    pdetest::waitUntil(
        [&] {
            for (const auto &user : users) {
                for (int jobId : user->jobs) {
                    if (scheduler.recordedOptions(jobId).isEmpty())
                        return false;
                }
            }
            return true;
        },
        120000);
    const double seconds = timer.elapsed() / 1000.0;

    // Idle: every agent polling, nothing to release.
    const qint64 schedulerBefore = cpuNanoseconds(scheduler.pid());
    QList<qint64> agentCpuBefore;
    for (const auto &user : users)
        agentCpuBefore << cpuNanoseconds(user->agent.processId());
    QThread::sleep(idleSeconds);
    const double schedulerPercent = double(cpuNanoseconds(scheduler.pid()) - schedulerBefore) / 1e7 / idleSeconds;
    QList<qint64> agentCpuUs, pssKb, rssKb, ussKb;
    for (size_t i = 0; i < users.size(); ++i) {
        const qint64 pid = users[i]->agent.processId();
        agentCpuUs << (cpuNanoseconds(pid) - agentCpuBefore[qsizetype(i)]) / 1000 / idleSeconds;
        pssKb << rollupKb(pid, "Pss");
        rssKb << rollupKb(pid, "Rss");
        ussKb << rollupKb(pid, "Private_Clean") + rollupKb(pid, "Private_Dirty");
    }

    QMap<int, int> releases; // job id -> times some agent released it
    int waited = 0, refused = 0;
    for (const auto &user : users) {
        if (user->agent.waitForFinished(0))
            fail(user->name + "'s agent ended: " + QString::fromUtf8(user->agent.readAllStandardError()).trimmed());
        user->agent.terminate();
        if (!user->agent.waitForFinished(20000) || user->agent.exitCode() != 0)
            fail(user->name + "'s agent did not stop cleanly");
        const QByteArray err = user->agent.readAllStandardError();
        waited += err.contains("waiting for the CUPS server") ? 1 : 0;
        refused += err.contains("refused a subscription") ? 1 : 0;
        const QStringList lines = QString::fromUtf8(user->agent.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
        for (const QString &line : lines) {
            const int jobId = line.section(QLatin1Char(' '), 2, 2).toInt();
            ++releases[jobId];
            if (!user->jobs.contains(jobId))
                fail(user->name + " released another's job: " + line);
        }
        const QString hex = QString::fromLatin1(user->code.toLatin1().toHex());
        for (int jobId : user->jobs) {
            const QString code = pdetest::parseOptions(scheduler.recordedOptions(jobId)).value(kMainCodeKey);
            if (code != hex)
                fail(QStringLiteral("job %1 of %2 ran with main code \"%3\"").arg(jobId).arg(user->name, code));
        }
    }
    for (auto it = releases.cbegin(); it != releases.cend(); ++it) {
        if (it.value() != 1)
            fail(QStringLiteral("job %1 released %2 times").arg(it.key()).arg(it.value()));
    }
    const int expected = userCount * jobsPerUser;
    if (releases.size() != expected)
        fail(QStringLiteral("%1 of %2 jobs released").arg(releases.size()).arg(expected));
    std::printf("soak: %d agents x %d jobs: %d jobs released in %.1f s, %d failures\n"
                "  agents that waited for the server: %d; refused a subscription: %d\n"
                "  idle %d s: scheduler %.2f %% of a core; an agent's CPU median %lld µs/s\n"
                "  an idle agent: PSS median %lld KiB (max %lld), private median %lld KiB, RSS median %lld KiB\n",
                userCount, jobsPerUser, int(releases.size()), seconds, failures, waited, refused, idleSeconds,
                schedulerPercent, median(agentCpuUs), median(pssKb), *std::max_element(pssKb.begin(), pssKb.end()),
                median(ussKb), median(rssKb));
    return failures == 0 ? 0 : 1;
}
