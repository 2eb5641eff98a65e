// Jobs printed with lp to queues that hold them, handled by pdeprint's held-job
// commands and agent through a private scheduler: what reaches the backend,
// and what must stay untouched.

#include "tests/host/PdeprintProcess.h"
#include "tests/support/CupsJobs.h"
#include "tests/support/PrivateScheduler.h"
#include "tests/support/TestSupport.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <cups/cups.h>
#include <gtest/gtest.h>

using namespace hosttest;
using pdetest::jobState;
using pdetest::lp;
using pdetest::waitUntil;

namespace {

constexpr char kHeld[] = "held";         // holds jobs; its PPD has the panel's options
constexpr char kUnserved[] = "unserved"; // holds jobs; its PPD has none of them
constexpr char kPlain[] = "plain";       // prints at once
const QString kPrefix = QStringLiteral("jp.co.nurat.print.PrintSettings.");
const QStringList kSteps { "--click", "mainCodeCB", "--type", "mainCodeText=77AB" };

class SchedulerEnvironment : public ::testing::Environment
{
public:
    void SetUp() override
    {
        // The sample PPD with the panel's options renamed: no panel handles that queue.
        QFile sample(pdetest::samplePpdPath());
        QFile unserved(ppdFolder.filePath("unserved.ppd"));
        if (!sample.open(QIODevice::ReadOnly) || !unserved.open(QIODevice::WriteOnly)) {
            error = QStringLiteral("cannot write a PPD");
            return;
        }
        unserved.write(sample.readAll().replace("ARMainCode", "XXMainCode").replace("ARSubCode", "XXSubCode"));
        unserved.close();
        error = scheduler.start(
            { .queues = { { kHeld, true, {} }, { kUnserved, true, unserved.fileName() }, { kPlain, false, {} } } });
    }
    void TearDown() override { scheduler.stop(); }

    QTemporaryDir ppdFolder;
    pdetest::PrivateScheduler scheduler;
    QString error;
};

SchedulerEnvironment *const environment =
    static_cast<SchedulerEnvironment *>(::testing::AddGlobalTestEnvironment(new SchedulerEnvironment));

QMap<QString, QString> nameValueLines(const QString &text)
{
    QMap<QString, QString> map;
    for (const QString &line : text.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        map.insert(line.section(QLatin1Char('='), 0, 0), line.section(QLatin1Char('='), 1));
    return map;
}

// The options the backend received for the job, once it ran.
QMap<QString, QString> received(int jobId)
{
    waitUntil([jobId] { return !environment->scheduler.recordedOptions(jobId).isEmpty(); });
    return pdetest::parseOptions(environment->scheduler.recordedOptions(jobId));
}

// A headless agent, stopped by SIGTERM at the end of the test; it must leave cleanly.
class Agent
{
public:
    explicit Agent(const QStringList &arguments)
    {
        process.setStandardInputFile(QProcess::nullDevice());
        process.start(QStringLiteral(PDEPRINT_EXECUTABLE), QStringList { "--agent", "--no-dialog" } + arguments);
    }
    ~Agent()
    {
        process.terminate();
        const bool finished = process.waitForFinished(20000);
        EXPECT_TRUE(finished && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0)
            << process.readAllStandardError().constData();
    }
    QProcess process;
};

class HeldJobs : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(environment->error.isEmpty()) << qPrintable(environment->error);
        qputenv("XDG_CONFIG_HOME", config.path().toUtf8());
    }
    QTemporaryDir config;
};

} // namespace

TEST_F(HeldJobs, ReleasedWithTheDryRunTicketWhileOtherHeldJobsStayUntouched)
{
    const char *ways[] = { "--release", "agent" };
    for (const char *way : ways) {
        const int unserved = lp(kUnserved);
        const int foreign = lp(kHeld, "alice");
        const int job = lp(kHeld);
        ASSERT_GT(job, 0);
        const RunResult dry = runPdeprint(QStringList { "--release", QString::number(job), "--dry-run" } + kSteps);
        ASSERT_EQ(dry.exitCode, 0) << qPrintable(dry.err);
        EXPECT_EQ(jobState(job), IPP_JSTATE_HELD) << "a dry run sends nothing";
        {
            std::unique_ptr<Agent> agent;
            if (QString(way) == "agent")
                agent = std::make_unique<Agent>(kSteps);
            else
                EXPECT_EQ(runPdeprint(QStringList { "--release", QString::number(job) } + kSteps).exitCode, 0);
            const QMap<QString, QString> options = received(job);
            const QMap<QString, QString> ticket = nameValueLines(dry.out);
            ASSERT_TRUE(ticket.contains(kPrefix + "bc.mainCode")) << qPrintable(dry.out);
            for (auto it = ticket.cbegin(); it != ticket.cend(); ++it) {
                // The spool time and the ciphers made from it move with the clock.
                const bool timed = it.key().endsWith("spoolTime") || it.key().endsWith("Code2");
                EXPECT_TRUE(options.contains(it.key())) << way << ": " << qPrintable(it.key());
                if (!timed) {
                    EXPECT_EQ(options.value(it.key()), it.value()) << way << ": " << qPrintable(it.key());
                }
            }
        }
        for (int untouched : { unserved, foreign }) {
            EXPECT_EQ(jobState(untouched), IPP_JSTATE_HELD) << way << ": job " << untouched;
            EXPECT_TRUE(environment->scheduler.recordedOptions(untouched).isEmpty()) << way;
        }
        const RunResult held = runPdeprint({ "--held" });
        EXPECT_FALSE(held.out.contains(QRegularExpression(QStringLiteral("^(%1|%2)\\t").arg(unserved).arg(foreign),
                                                          QRegularExpression::MultilineOption)))
            << qPrintable(held.out);
    }
}

TEST_F(HeldJobs, ReleaseErrorsAreOneLineAndChangeNothing)
{
    const int held = lp(kHeld);
    const int foreign = lp(kHeld, "alice");
    const int unserved = lp(kUnserved);
    const int printed = lp(kPlain);
    ASSERT_TRUE(waitUntil([printed] { return jobState(printed) == IPP_JSTATE_COMPLETED; }));
    const struct { const char *what; int job; QByteArray server; const char *reasonPart; } cases[] = {
        { "no such job", 9999, {}, "no job 9999" },
        { "another user's job", foreign, {}, "another user" },
        { "a job not held", printed, {}, "not held" },
        { "an unserved queue", unserved, {}, "unserved" },
        { "no server", held, "127.0.0.1:1", "CUPS server" },
    };
    for (const auto &c : cases) {
        const QByteArray server = qgetenv("CUPS_SERVER");
        if (!c.server.isEmpty())
            qputenv("CUPS_SERVER", c.server);
        const RunResult result = runPdeprint(QStringList { "--release", QString::number(c.job) } + kSteps);
        qputenv("CUPS_SERVER", server);
        EXPECT_EQ(result.exitCode, 1) << c.what;
        EXPECT_EQ(result.err.count('\n'), 1) << c.what << ": " << qPrintable(result.err);
        EXPECT_TRUE(result.err.contains(c.reasonPart)) << c.what << ": " << qPrintable(result.err);
    }
    for (int job : { held, foreign, unserved })
        EXPECT_EQ(jobState(job), IPP_JSTATE_HELD) << job;
}

TEST_F(HeldJobs, TheAgentSurvivesACancelledJobAndASchedulerRestart)
{
    // Cancelled before the agent starts: a running agent could release it
    // before the cancel lands, and nothing would be proven.
    const int cancelled = lp(kHeld);
    ASSERT_EQ(QProcess::execute(QStringLiteral("cancel"), { QString::number(cancelled) }), 0);
    Agent agent(kSteps);
    const int before = lp(kHeld);
    EXPECT_TRUE(received(before).contains(kPrefix + "bc.mainCode"));
    EXPECT_EQ(jobState(cancelled), IPP_JSTATE_CANCELED);
    EXPECT_TRUE(environment->scheduler.recordedOptions(cancelled).isEmpty());

    ASSERT_EQ(environment->scheduler.restart(), QString());
    const int after = lp(kHeld);
    EXPECT_TRUE(received(after).contains(kPrefix + "bc.mainCode")) << qPrintable(environment->scheduler.log());
}

TEST_F(HeldJobs, KeptCodesReleaseTheNextJobWithoutSteps)
{
    const int first = lp(kHeld);
    const int second = lp(kHeld);
    // Nothing kept yet: the job waits for someone to give codes.
    EXPECT_EQ(runPdeprint({ "--release-kept" }).exitCode, 0);
    EXPECT_EQ(jobState(first), IPP_JSTATE_HELD);

    EXPECT_EQ(runPdeprint(QStringList { "--release", QString::number(first) } + kSteps + QStringList { "--click", "holdButton" }).exitCode, 0);
    const RunResult kept = runPdeprint({ "--release-kept" });
    EXPECT_EQ(kept.exitCode, 0) << qPrintable(kept.err);
    const QMap<QString, QString> firstOptions = received(first);
    const QMap<QString, QString> secondOptions = received(second);
    for (const char *key : { "bc.mainCodecb", "bc.mainCode", "bc.holdButton" })
        EXPECT_EQ(secondOptions.value(kPrefix + key), firstOptions.value(kPrefix + key)) << key;
    EXPECT_EQ(secondOptions.value(kPrefix + "bc.mainCode"), "37374142");

    // pdeprint's own jobs carry their ticket: the holding queue lets them through.
    const RunResult own = runPdeprint({ "--no-dialog", "--printer", kHeld, sampleText() });
    const int ownJob = own.out.section('-', 1).section(' ', 0, 0).toInt();
    ASSERT_GT(ownJob, 0) << qPrintable(own.out + own.err);
    EXPECT_NE(jobState(ownJob), IPP_JSTATE_HELD);
}
