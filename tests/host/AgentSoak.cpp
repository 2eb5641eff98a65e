// Twenty headless agents for twenty users on one private scheduler, ten jobs
// a user submitted at once with lp: every job released once, by its owner's
// agent, with its owner's code. The burst overflows the scheduler's event
// store, so the agents must notice the gap and list the jobs again.

#include "tests/host/PdeprintProcess.h"
#include "tests/support/CupsJobs.h"
#include "tests/support/PrivateScheduler.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

using namespace hosttest;

namespace {

constexpr int kUsers = 20;
constexpr int kJobsPerUser = 10;

struct User
{
    QString name;
    QString code;
    QTemporaryDir config;
    std::unique_ptr<Agent> agent;
    QList<int> jobs;
};

TEST(AgentSoak, EveryJobIsReleasedOnceByItsOwnersAgentWithItsOwnersCode)
{
    pdetest::PrivateScheduler scheduler;
    ASSERT_EQ(scheduler.start({ .queues = { { "office", true, {} } } }), QString());

    std::vector<User> users(kUsers);
    for (int i = 0; i < kUsers; ++i) {
        User &user = users[size_t(i)];
        user.name = QStringLiteral("soak%1").arg(i + 1);
        user.code = QString::number(7000 + i);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("CUPS_USER", user.name);
        environment.insert("XDG_CONFIG_HOME", user.config.path());
        user.agent = std::make_unique<Agent>(QStringList { "--click", "mainCodeCB", "--type", "mainCodeText=" + user.code },
                                             environment);
    }

    // Every job at once, each lp its own process.
    std::vector<std::pair<User *, std::unique_ptr<QProcess>>> submissions;
    for (User &user : users) {
        for (int j = 0; j < kJobsPerUser; ++j) {
            auto lp = std::make_unique<QProcess>();
            lp->start(QStringLiteral("lp"), { "-U", user.name, "-d", "office", "-o", "raw", sampleText() });
            submissions.emplace_back(&user, std::move(lp));
        }
    }
    for (auto &[user, lp] : submissions) {
        ASSERT_TRUE(lp->waitForFinished(60000));
        const int jobId = pdetest::jobIdIn(QString::fromUtf8(lp->readAllStandardOutput()));
        ASSERT_GT(jobId, 0) << lp->readAllStandardError().constData();
        user->jobs << jobId;
    }

    // Each job reaches the backend once it is released.
    const bool allRan = pdetest::waitUntil(
        [&] {
            return std::all_of(users.begin(), users.end(), [&](const User &user) {
                return std::none_of(user.jobs.begin(), user.jobs.end(),
                                    [&](int jobId) { return scheduler.recordedOptions(jobId).isEmpty(); });
            });
        },
        120000);
    EXPECT_TRUE(allRan) << qPrintable(scheduler.log());

    QMap<int, int> releases; // job id -> times some agent released it
    for (User &user : users) {
        for (const QString &line : user.agent->stop().split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
            const int jobId = line.section(QLatin1Char(' '), 2, 2).toInt();
            ++releases[jobId];
            EXPECT_TRUE(user.jobs.contains(jobId)) << qPrintable(user.name) << " released another's job: " << qPrintable(line);
        }
        for (int jobId : user.jobs) {
            EXPECT_EQ(scheduler.received(jobId).value(kPrefix + "bc.mainCode"), QString::fromLatin1(user.code.toLatin1().toHex()))
                << "job " << jobId << " of " << qPrintable(user.name);
        }
    }
    EXPECT_EQ(releases.size(), kUsers * kJobsPerUser);
    for (auto it = releases.cbegin(); it != releases.cend(); ++it)
        EXPECT_EQ(it.value(), 1) << "job " << it.key();
}

} // namespace
