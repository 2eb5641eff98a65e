// Twenty headless agents for twenty users on one private scheduler, ten jobs
// a user submitted at once with lp: every job must be released once, by its
// owner's agent, with its owner's code. The burst overflows the scheduler's
// event store, so the agents must notice the gap and list the jobs again.
//
//   pdebench_soak [--users N] [--jobs-per-user N]
//
// A scale run (./dev soak, a few seconds on two cores), kept beside the
// benchmarks rather than in the suite: the gap it once exposed is caught there,
// deterministically, by HeldJobs.JobsBeyondTheSchedulersEventStoreAreEachReleasedOnce.

#include "tests/support/CupsJobs.h"
#include "tests/support/PrivateScheduler.h"
#include "tests/support/TestSupport.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

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

int optionValue(const QStringList &arguments, const QString &name, int fallback)
{
    const qsizetype at = arguments.indexOf(name);
    return at > 0 && at + 1 < arguments.size() ? std::max(1, arguments[at + 1].toInt()) : fallback;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const int userCount = optionValue(application.arguments(), "--users", 20);
    const int jobsPerUser = optionValue(application.arguments(), "--jobs-per-user", 10);
    pdetest::PrivateScheduler scheduler;
    if (const QString error = scheduler.start({ .queues = { { kQueue, true, {} } } }); !error.isEmpty()) {
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
        user->agent.setProcessEnvironment(environment);
        user->agent.setStandardInputFile(QProcess::nullDevice());
        user->agent.setProcessChannelMode(QProcess::ForwardedErrorChannel);
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

    QMap<int, int> releases; // job id -> times some agent released it
    for (const auto &user : users) {
        user->agent.terminate();
        if (!user->agent.waitForFinished(20000) || user->agent.exitCode() != 0)
            fail(user->name + "'s agent did not stop cleanly");
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
    std::printf("soak: %d agents x %d jobs: %d jobs released in %.1f s, %d failures\n", userCount, jobsPerUser,
                int(releases.size()), seconds, failures);
    return failures == 0 ? 0 : 1;
}
