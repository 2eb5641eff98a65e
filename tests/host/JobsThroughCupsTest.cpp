// Real jobs through a CUPS scheduler of the test's own: the ticket reaches the
// job's attributes, kept codes come back on the next job, bad input sends nothing.

#include "tests/host/PdeprintProcess.h"
#include "tests/support/CupsJobs.h"
#include "tests/support/PrivateScheduler.h"
#include "tests/support/TestSupport.h"

#include <QRegularExpression>
#include <QTemporaryDir>

#include <cups/cups.h>
#include <gtest/gtest.h>

using namespace hosttest;
using pdetest::jobAttributes;

namespace {

constexpr char kQueue[] = "qr7150k";
const QString kPrefix = QStringLiteral("jp.co.nurat.print.PrintSettings.");

pdetest::SchedulerEnvironment *const scheduler = static_cast<pdetest::SchedulerEnvironment *>(
    ::testing::AddGlobalTestEnvironment(new pdetest::SchedulerEnvironment({ .queues = { { kQueue, false, {} } } })));

int jobCount()
{
    cups_job_t *jobs = nullptr;
    const int count = cupsGetJobs2(CUPS_HTTP_DEFAULT, &jobs, nullptr, 0, CUPS_WHICHJOBS_ALL);
    cupsFreeJobs(count, jobs);
    return count;
}

class JobsThroughCups : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(scheduler->error.isEmpty()) << qPrintable(scheduler->error);
        qputenv("XDG_CONFIG_HOME", config.path().toUtf8()); // codes kept in one test stay out of the next
    }

    // Prints the sample held on the queue, so that no filter runs; answers the job's id.
    int print(const QStringList &extra)
    {
        const QStringList held { "--no-dialog", "--printer", kQueue, "-o", "job-hold-until=indefinite" };
        const RunResult result = runPdeprint(held + extra + QStringList { sampleText() });
        EXPECT_EQ(result.exitCode, 0) << qPrintable(result.err);
        return pdetest::jobIdIn(result.out);
    }

    QTemporaryDir config;
};

} // namespace

TEST_F(JobsThroughCups, TheTicketArrivesAsJobAttributesAndKeptCodesFillTheNextJob)
{
    const int first = print({ "--click", "mainCodeCB", "--type", "mainCodeText=77AB", "--click", "subCodeCB", "--type",
                              "subCodeText=9", "--click", "holdButton", "-o", "ARMainCode=On", "--copies", "2" });
    ASSERT_GT(first, 0);
    const QMap<QString, QString> ticket = jobAttributes(first);
    EXPECT_EQ(ticket.value("copies"), "2");
    EXPECT_FALSE(ticket.contains("ARMainCode")) << "the panel handles that option itself";
    const std::pair<const char *, const char *> expected[] = {
        { "bc.mainCodecb", "1" }, { "bc.mainCode", "37374142" }, { "bc.mainCode2", "[A-Za-z0-9+/]+=*" },
        { "bc.subCodecb", "1" }, { "bc.subCode", "39" }, { "bc.subCode2", "[A-Za-z0-9+/]+=*" },
        { "bc.holdButton", "1" }, { "spoolTime", "[0-9A-F]{16,}" }, // hexadecimal text keeping every digit
    };
    for (const auto &[key, pattern] : expected) {
        const QString value = ticket.value(kPrefix + key);
        EXPECT_TRUE(QRegularExpression(QRegularExpression::anchoredPattern(pattern)).match(value).hasMatch())
            << key << " = " << qPrintable(value);
    }

    const QMap<QString, QString> next = jobAttributes(print({}));
    for (const char *key : { "bc.mainCodecb", "bc.mainCode", "bc.subCodecb", "bc.subCode", "bc.holdButton" })
        EXPECT_EQ(next.value(kPrefix + key), ticket.value(kPrefix + key)) << key;
}

TEST_F(JobsThroughCups, BadQueuesAndChoicesSendNothing)
{
    const int jobsBefore = jobCount();
    const struct { const char *what; QStringList arguments; const char *reasonPart; } cases[] = {
        { "unknown printer", { "--printer", "nosuchqueue" }, "unknown printer" },
        { "conflicting PPD choice", { "--printer", kQueue, "-o", "ARSubCode=On" }, "conflict" },
    };
    for (const auto &c : cases) {
        const RunResult result = runPdeprint(QStringList { "--no-dialog" } + c.arguments + QStringList { sampleText() });
        EXPECT_GT(result.exitCode, 0) << c.what;
        EXPECT_EQ(result.err.count('\n'), 1) << c.what << ": " << qPrintable(result.err);
        EXPECT_TRUE(result.err.contains(c.reasonPart)) << c.what << ": " << qPrintable(result.err);
    }
    EXPECT_EQ(jobCount(), jobsBefore);
}

// lp's order: the instance's saved options, then the command line's on top.
TEST_F(JobsThroughCups, SavedOptionsOfTheInstanceApplyUnderTheCommandLine)
{
    QTemporaryDir home;
    QFile lpoptions(home.filePath(".cups/lpoptions"));
    ASSERT_TRUE(QDir(home.path()).mkpath(".cups") && lpoptions.open(QIODevice::WriteOnly)
                && lpoptions.write(QByteArray("Dest ") + kQueue + "/duplex sides=two-sided-long-edge media=a5 number-up=2\n") > 0);
    lpoptions.close();
    const QByteArray ownHome = qgetenv("HOME");
    qputenv("HOME", home.path().toUtf8());
    const RunResult result = runPdeprint({ "--no-dialog", "--dry-run", "--printer", QString::fromLatin1(kQueue) + "/duplex",
                                           "--sides", "one-sided", "-o", "media=a4", sampleText() });
    qputenv("HOME", ownHome);
    ASSERT_EQ(result.exitCode, 0) << qPrintable(result.err);
    const QStringList lines = result.out.split('\n');
    EXPECT_TRUE(lines.contains("number-up=2") && lines.contains("sides=one-sided") && lines.contains("media=a4"))
        << qPrintable(result.out);
    EXPECT_TRUE(lines.filter(QRegularExpression("^(printer-|media=a5|sides=two)")).isEmpty()) << qPrintable(result.out);
}
