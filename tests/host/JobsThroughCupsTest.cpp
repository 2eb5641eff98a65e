// Real jobs through a CUPS scheduler of the test's own: pdeprint's ticket
// reaches the job's attributes; jobs printed with lp to queues that hold them
// are released by pdeprint's held-job commands and agent with that ticket;
// other users' and unserved jobs, and bad input, change nothing.

#include "platform/UserDefaults.h"
#include "tests/host/PdeprintProcess.h"
#include "tests/support/CupsJobs.h"
#include "tests/support/PrivateScheduler.h"

#include <QDir>

#include <QRegularExpression>
#include <QSet>

#include <signal.h>
#include <unistd.h>

#include <cups/cups.h>
#include <gtest/gtest.h>

using namespace hosttest;
using pdetest::jobState;
using pdetest::lp;
using pdetest::waitUntil;

namespace {

constexpr char kHeld[] = "held";         // holds jobs; its PPD has the panel's options
constexpr char kUnserved[] = "unserved"; // holds jobs; no PPD, so no panel
constexpr char kGeneric[] = "generic";   // a PPD without the panel's options; jobs held with lp -H only
constexpr char kAuth[] = "auth";         // its printer holds each job for credentials
constexpr char kPlain[] = "plain";       // prints at once
constexpr char kPrivate[] = "private";   // holds jobs; under the shipped privacy lines
const QStringList kSteps { "--click", "mainCodeCB", "--type", "mainCodeText=77AB",
                           "--click", "subCodeCB",  "--type", "subCodeText=9" };
// Every attribute that carries a code: the ticket's and the standard ones.
const QStringList kCodeAttributes { kTicketPrefix + "bc.mainCode", kTicketPrefix + "bc.mainCode2",
                                    kTicketPrefix + "bc.subCode",  kTicketPrefix + "bc.subCode2",
                                    "job-account-id", "job-accounting-user-id", "job-billing" };

// A small event store, so that a few jobs between two of an agent's polls overflow it.
pdetest::SchedulerEnvironment *const environment = pdetest::SchedulerEnvironment::add(
    { .queues = { { kHeld, true, {} }, { kUnserved, true, "-" }, { kPlain, false, {} }, { kPrivate, true, {}, true },
                  { kGeneric, false, PDE_SOURCE_DIR "/tests/data/generic-postscript.ppd" },
                  { kAuth, false, {}, false, "record:auth" } },
      .policyLines = pdetest::shippedPolicyLines(), .extraLines = { "MaxEvents 3" } });

using JobsThroughCups = pdetest::SchedulerTest;
using HeldJobs = pdetest::SchedulerTest;

int jobCount()
{
    cups_job_t *jobs = nullptr;
    const int count = cupsGetJobs2(CUPS_HTTP_DEFAULT, &jobs, nullptr, 0, CUPS_WHICHJOBS_ALL);
    cupsFreeJobs(count, jobs);
    return count;
}

// The code-bearing attributes of the job that `user` is shown.
QStringList codeAttributesSeenBy(int jobId, const char *user)
{
    const QMap<QString, QString> attributes = pdetest::jobAttributes(jobId, user);
    QStringList seen = kCodeAttributes;
    seen.removeIf([&](const QString &name) { return !attributes.contains(name); });
    return seen;
}

} // namespace

// lp's order: the instance's saved options, then the command line's on top;
// a queue without a PPD takes any -o.
TEST_F(JobsThroughCups, SavedOptionsOfTheInstanceApplyUnderTheCommandLine)
{
    QTemporaryDir home;
    ASSERT_TRUE(pdetest::writeFile(home.filePath(".cups/lpoptions"),
                                   QByteArray("Dest ") + kUnserved + "/duplex sides=two-sided-long-edge media=a5 number-up=2\n"));
    const QByteArray ownHome = qgetenv("HOME");
    qputenv("HOME", home.path().toUtf8());
    const RunResult result = runPdeprint({ "--no-dialog", "--dry-run", "--printer", QString(kUnserved) + "/duplex",
                                           "--sides", "one-sided", "-o", "media=a4", sampleText() });
    qputenv("HOME", ownHome);
    ASSERT_EQ(result.exitCode, 0) << qPrintable(result.err);
    const QStringList lines = result.out.split('\n');
    EXPECT_TRUE(lines.contains("number-up=2") && lines.contains("sides=one-sided") && lines.contains("media=a4"))
        << qPrintable(result.out);
    EXPECT_TRUE(lines.filter(QRegularExpression("^(printer-|media=a5|sides=two)")).isEmpty()) << qPrintable(result.out);
}

TEST_F(HeldJobs, ReleasedWithTheDryRunTicketWhileOtherHeldJobsStayUntouched)
{
    for (const char *way : { "--release", "agent" }) {
        const int unserved = lp(kUnserved), foreign = lp(kHeld, "alice"), job = lp(kHeld);
        const int generic = lp(kGeneric, nullptr, { "-o", "raw", "-H", "indefinite" });
        ASSERT_GT(job, 0);
        const RunResult dry = runPdeprint(QStringList { "--release", QString::number(job), "--dry-run" } + kSteps);
        ASSERT_EQ(dry.exitCode, 0) << qPrintable(dry.err);
        EXPECT_EQ(jobState(job), IPP_JSTATE_HELD) << "a dry run sends nothing";
        EXPECT_TRUE(QString(way) == "agent" || !QDir(pde::UserDefaults::preferencesDirectory()).exists())
            << "nor stores a first record for the queue";
        // Listed alone: the other user's job and the unserved queue's are not ours.
        const RunResult held = runPdeprint({ "--held" });
        const QString line = QStringLiteral("^%1\\theld\\tsample.txt\\t20\\d\\d-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\n$").arg(job);
        EXPECT_TRUE(QRegularExpression(line).match(held.out).hasMatch()) << qPrintable(held.out);
        {
            std::unique_ptr<Agent> agent;
            if (QString(way) == "agent")
                agent = std::make_unique<Agent>(kSteps);
            else
                EXPECT_EQ(runPdeprint(QStringList { "--release", QString::number(job) } + kSteps).exitCode, 0);
            const QMap<QString, QString> options = scheduler().received(job);
            const QMap<QString, QString> ticket = pdetest::parseOptions(dry.out);
            EXPECT_EQ(dry.out.count('\n'), ticket.size()) << "a line each";
            ASSERT_TRUE(ticket.contains(kTicketPrefix + "bc.mainCode")) << qPrintable(dry.out);
            for (auto it = ticket.cbegin(); it != ticket.cend(); ++it) {
                // The spool time and the ciphers made from it move with the clock.
                const bool timed = it.key().endsWith("spoolTime") || it.key().endsWith("Code2");
                EXPECT_EQ(options.value(it.key(), "missing"), timed ? options.value(it.key()) : it.value())
                    << way << ": " << qPrintable(it.key());
            }
        }
        for (int untouched : { unserved, foreign, generic }) {
            EXPECT_EQ(jobState(untouched), IPP_JSTATE_HELD) << way << ": job " << untouched;
            EXPECT_TRUE(scheduler().recordedOptions(untouched).isEmpty()) << way;
        }
    }
}

// Bad jobs or queues, for a release or a print: one line, exit 1, nothing sent or changed.
TEST_F(HeldJobs, ErrorsAreOneLineAndChangeNothing)
{
    const int held = lp(kHeld), foreign = lp(kHeld, "alice"), unserved = lp(kUnserved), printed = lp(kPlain), auth = lp(kAuth);
    ASSERT_TRUE(waitUntil([=] { return jobState(printed) == IPP_JSTATE_COMPLETED && jobState(auth) == IPP_JSTATE_HELD; }));
    const int jobsBefore = jobCount();
    const auto release = [](int job) { return QStringList { "--release", QString::number(job) } + kSteps; };
    const struct { const char *what; QStringList arguments; QByteArray server; const char *reasonPart; } cases[] = {
        { "no such job", release(9999), {}, "no job 9999" },
        { "another user's job", release(foreign), {}, "another user" },
        { "a job not held", release(printed), {}, "not held" },
        { "a job held for credentials", release(auth), {}, "not held" },
        { "an unserved queue", release(unserved), {}, "unserved" },
        { "no server", release(held), "127.0.0.1:1", "CUPS server" },
        { "unknown printer", { "--no-dialog", "--printer", "nosuchqueue", sampleText() }, {}, "unknown printer" },
        { "conflicting PPD choice", { "--no-dialog", "--printer", kPlain, "-o", "ARSubCode=On", sampleText() }, {}, "conflict" },
    };
    for (const auto &c : cases) {
        const QByteArray server = qgetenv("CUPS_SERVER");
        if (!c.server.isEmpty())
            qputenv("CUPS_SERVER", c.server);
        const RunResult result = runPdeprint(c.arguments);
        qputenv("CUPS_SERVER", server);
        EXPECT_EQ(result.exitCode, 1) << c.what;
        EXPECT_EQ(result.err.count('\n'), 1) << c.what << ": " << qPrintable(result.err);
        EXPECT_TRUE(result.err.contains(c.reasonPart)) << c.what << ": " << qPrintable(result.err);
    }
    EXPECT_EQ(jobCount(), jobsBefore);
    for (int job : { held, foreign, unserved, auth })
        EXPECT_EQ(jobState(job), IPP_JSTATE_HELD) << job;
}

TEST_F(HeldJobs, TheAgentSurvivesACancelledJobAndASchedulerRestart)
{
    // Cancelled before the agent starts (a running agent could release it
    // before the cancel lands): the agent passes it by without a word.
    const int cancelled = lp(kHeld);
    ASSERT_EQ(QProcess::execute(QStringLiteral("cancel"), { QString::number(cancelled) }), 0);
    Agent agent(kSteps);
    EXPECT_TRUE(scheduler().received(lp(kHeld)).contains(kTicketPrefix + "bc.mainCode"));

    ASSERT_EQ(scheduler().restart(), QString());
    EXPECT_TRUE(scheduler().received(lp(kHeld)).contains(kTicketPrefix + "bc.mainCode")) << qPrintable(scheduler().log());
}

// Started while the server is away, as at a login before the network: the
// agent says so once, waits, and serves the jobs held once it answers.
TEST_F(HeldJobs, AnAgentStartedWhileTheSchedulerIsDownWaitsForIt)
{
    scheduler().stop();
    Agent agent(kSteps);
    agent.process.setReadChannel(QProcess::StandardError);
    QByteArray told;
    const bool waiting = waitUntil([&] {
        agent.process.waitForReadyRead(20);
        told += agent.process.readAllStandardError();
        return told.contains('\n');
    });
    ASSERT_EQ(scheduler().restart(), QString());
    ASSERT_TRUE(waiting) << "the agent ended or said nothing: " << agent.process.state();
    EXPECT_TRUE(told.startsWith("pdeprint: waiting for the CUPS server at " + qgetenv("CUPS_SERVER"))) << told.constData();
    EXPECT_TRUE(scheduler().received(lp(kHeld)).contains(kTicketPrefix + "bc.mainCode")) << qPrintable(scheduler().log());
}

// The scheduler drops the oldest events of a full store: jobs that arrive while
// the agent cannot poll leave a gap in the events, and it must list them again.
TEST_F(HeldJobs, JobsBeyondTheSchedulersEventStoreAreEachReleasedOnce)
{
    Agent agent(kSteps);
    ASSERT_FALSE(scheduler().received(lp(kHeld)).isEmpty()) << "the agent is up and polling";
    ASSERT_EQ(::kill(pid_t(agent.process.processId()), SIGSTOP), 0);
    QList<int> jobs;
    for (int i = 0; i < 5; ++i)
        jobs << lp(kHeld);
    EXPECT_TRUE(runPdeprint({ "--held" }).out.startsWith(QString::number(jobs[0]) + '\t')) << "oldest first";
    ASSERT_EQ(::kill(pid_t(agent.process.processId()), SIGCONT), 0);
    for (int job : jobs)
        EXPECT_TRUE(scheduler().received(job).contains(kTicketPrefix + "bc.mainCode")) << job;
    const QStringList released = agent.stop().split('\n', Qt::SkipEmptyParts);
    EXPECT_EQ(released.size(), 6) << qPrintable(released.join('\n'));
    EXPECT_EQ(released.size(), QSet<QString>(released.begin(), released.end()).size());
}

// Who can read a job's billing codes: under the shipped policy lines its owner
// only; under the scheduler's defaults anyone, so that a change of those
// defaults is noticed. The owner's own release still works under the lines.
TEST_F(HeldJobs, TheShippedPolicyShowsTheCodesToTheOwnerOnly)
{
    ASSERT_EQ(pdetest::shippedPolicyLines().size(), 7);
    for (const char *queue : { kPrivate, kHeld }) {
        const RunResult printed = runPdeprint(QStringList { "--no-dialog", "--printer", queue } + kSteps
            + QStringList { "-o", "job-accounting-user-id=clerk", sampleText() });
        const int job = pdetest::jobIdIn(printed.out);
        ASSERT_GT(job, 0) << qPrintable(printed.err);
        EXPECT_EQ(codeAttributesSeenBy(job, cupsUser()), kCodeAttributes) << queue;
        EXPECT_EQ(codeAttributesSeenBy(job, "mallory"), queue == kPrivate ? QStringList() : kCodeAttributes) << queue;
    }
    const int held = lp(kPrivate);
    EXPECT_EQ(runPdeprint(QStringList { "--release", QString::number(held) } + kSteps).exitCode, 0);
    EXPECT_EQ(scheduler().received(held).value(kTicketPrefix + "bc.mainCode"), "37374142");
    EXPECT_EQ(codeAttributesSeenBy(held, "mallory"), QStringList());
}

// pdeprint's own job carries its ticket past the holding queue, and the codes
// it kept release the next held job.
TEST_F(HeldJobs, TheTicketArrivesAsJobAttributesAndKeptCodesReleaseTheNextJob)
{
    const int next = lp(kHeld);
    lp(kUnserved); // not ours: never named
    // As the scheduler records a job that came from another host (cupsd takes
    // the origin a local client such as its LPD gateway gives).
    const int remote = lp(kHeld, nullptr, { "-o", "raw", "-o", "job-originating-host-name=desk7.example" });
    // Nothing kept yet: the job waits for someone to give codes.
    EXPECT_EQ(runPdeprint({ "--release-kept" }).exitCode, 0);
    EXPECT_EQ(jobState(next), IPP_JSTATE_HELD);

    const RunResult printed = runPdeprint(QStringList { "--no-dialog", "--printer", kHeld } + kSteps
        + QStringList { "--ppd", pdetest::samplePpdPath(), "--click", "holdButton", "-o", "ARMainCode=On", sampleText(),
                        QStringLiteral(PDE_SOURCE_DIR "/platform/resources/icons/changes-allow.png") });
    const int own = pdetest::jobIdIn(printed.out);
    EXPECT_NE(jobState(own), IPP_JSTATE_HELD) << qPrintable(printed.err);
    const QMap<QString, QString> ticket = pdetest::jobAttributes(own);
    EXPECT_EQ(ticket.value("job-originating-user-name"), cupsUser()) << "not an anonymous job";
    EXPECT_EQ(ticket.value("job-name"), "sample.txt") << "named after the first file, without its folder";
    EXPECT_EQ(ticket.value("document-format-detected"), "image/png") << "the last file went, as itself";
    EXPECT_FALSE(ticket.contains("ARMainCode")) << "the panel handles that option itself";
    const std::pair<const char *, const char *> expected[] = {
        { "bc.mainCodecb", "1" }, { "bc.mainCode", "37374142" }, { "bc.mainCode2", "[A-Za-z0-9+/]+=*" },
        { "bc.subCodecb", "1" }, { "bc.subCode", "39" }, { "bc.subCode2", "[A-Za-z0-9+/]+=*" },
        { "bc.holdButton", "1" }, { "spoolTime", "[0-9A-F]{16,}" }, // hexadecimal text keeping every digit
    };
    for (const auto &[key, pattern] : expected) {
        EXPECT_TRUE(QRegularExpression(QRegularExpression::anchoredPattern(pattern)).match(ticket.value(kTicketPrefix + key)).hasMatch())
            << key << " = " << qPrintable(ticket.value(kTicketPrefix + key));
    }

    const RunResult kept = runPdeprint({ "--release-kept" });
    EXPECT_EQ(kept.exitCode, 0) << qPrintable(kept.err);
    EXPECT_EQ(kept.out, QStringLiteral("released job %1 on held\njob %2 on held left held: sent from desk7.example, not "
                                       "this machine; release it with --release %2\n")
                            .arg(next)
                            .arg(remote));
    EXPECT_EQ(jobState(remote), IPP_JSTATE_HELD);
    const QMap<QString, QString> options = scheduler().received(next);
    for (const char *key : { "bc.mainCodecb", "bc.mainCode", "bc.subCodecb", "bc.subCode", "bc.holdButton" })
        EXPECT_EQ(options.value(kTicketPrefix + key), ticket.value(kTicketPrefix + key)) << key;
}

// Under the shipped lines a user submits only under their own name: the local
// socket tells the scheduler who calls, and over TCP nobody gives a password.
TEST(ShippedPolicy, AJobUnderAnotherUsersNameIsRefusedAndOnesOwnAccepted)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "runuser needs root";
    pdetest::PrivateScheduler server;
    ASSERT_EQ(server.start({ .queues = { { kPrivate, true, {}, true } }, .policyLines = pdetest::shippedPolicyLines(),
                             .extraLines = { "DefaultAuthType Basic" } }),
              QString());
    const struct { QString host; const char *user; const char *owner; } rows[] = {
        { server.socketPath(), "alice", nullptr }, { server.server(), "alice", nullptr }, { server.socketPath(), nullptr, "nobody" },
    };
    for (const auto &[host, user, owner] : rows) {
        QProcess process;
        process.setStandardInputFile(QProcess::nullDevice());
        process.start(QStringLiteral("runuser"), QStringList { "-u", "nobody", "--", "lp", "-h", host, "-d", kPrivate }
                          + (user ? QStringList { "-U", user } : QStringList()) + QStringList { PDE_SOURCE_DIR "/examples/sample.txt" });
        ASSERT_TRUE(process.waitForFinished(30000));
        const int job = pdetest::jobIdIn(QString::fromUtf8(process.readAllStandardOutput()));
        // Asked as the name it was sent under, which sees its own job's owner.
        EXPECT_EQ(pdetest::jobAttributes(job, user ? user : "nobody").value("job-originating-user-name"), owner ? owner : "")
            << qPrintable(host);
    }
}
