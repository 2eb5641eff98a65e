// Real jobs through a private CUPS scheduler: the ticket reaches the job's
// attributes, kept codes come back on the next job, bad queues send nothing.

#include "tests/host/PdeprintProcess.h"
#include "tests/host/PrivateScheduler.h"

#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace hosttest;

namespace {

constexpr char kQueue[] = "qr7150k";
const QString kPrefix = QStringLiteral("jp.co.nurat.print.PrintSettings.");

// One scheduler for the test process, stopped even when a test fails.
class SchedulerEnvironment : public ::testing::Environment
{
public:
    void SetUp() override
    {
        scheduler = std::make_unique<PrivateScheduler>();
        QString error;
        if (!scheduler->start(&error) || !scheduler->addQueue(kQueue, samplePpd(), &error))
            startError = error;
    }
    void TearDown() override { scheduler.reset(); }

    std::unique_ptr<PrivateScheduler> scheduler;
    QString startError;
};

SchedulerEnvironment *const environment =
    static_cast<SchedulerEnvironment *>(::testing::AddGlobalTestEnvironment(new SchedulerEnvironment));

class JobsThroughCups : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(environment->startError.isEmpty()) << qPrintable(environment->startError);
        processEnvironment = testEnvironment(config.path());
        processEnvironment.insert("CUPS_SERVER", environment->scheduler->server());
    }

    // Prints the sample held on the queue, so that no filter has to run, and
    // answers the job's id (0 on failure).
    int print(const QStringList &extra)
    {
        const RunResult result = runPdeprint(QStringList { "--no-dialog", "--printer", kQueue, "-o",
                                                           "job-hold-until=indefinite" }
                                                 + extra + QStringList { sampleText() },
                                             processEnvironment);
        EXPECT_EQ(result.exitCode, 0) << qPrintable(result.err);
        const QRegularExpressionMatch match =
            QRegularExpression(QStringLiteral("request id is %1-(\\d+)").arg(kQueue)).match(result.out);
        EXPECT_TRUE(match.hasMatch()) << qPrintable(result.out);
        return match.hasMatch() ? match.captured(1).toInt() : 0;
    }

    QTemporaryDir config;
    QProcessEnvironment processEnvironment;
};

QString hexOf(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toHex().toUpper());
}

} // namespace

TEST_F(JobsThroughCups, TheTicketArrivesAsJobAttributes)
{
    const int job = print({ "--click", "mainCodeCB", "--type", "mainCodeText=1234", "-o", "ARMainCode=On",
                            "--copies", "2" });
    ASSERT_GT(job, 0);
    const QMap<QString, QString> attributes = environment->scheduler->jobAttributes(job);
    ASSERT_FALSE(attributes.isEmpty());
    EXPECT_EQ(attributes.value("copies"), "2");
    EXPECT_FALSE(attributes.contains("ARMainCode")) << "the panel handles that option itself";

    EXPECT_EQ(attributes.value(kPrefix + "bc.mainCodecb"), "1");
    EXPECT_EQ(attributes.value(kPrefix + "bc.mainCode"), hexOf("1234"));
    EXPECT_TRUE(QRegularExpression("^[A-Za-z0-9+/]+=*$").match(attributes.value(kPrefix + "bc.mainCode2")).hasMatch())
        << qPrintable(attributes.value(kPrefix + "bc.mainCode2"));
    EXPECT_EQ(attributes.value(kPrefix + "bc.subCodecb"), "0");
    EXPECT_FALSE(attributes.contains(kPrefix + "bc.subCode"));
    EXPECT_FALSE(attributes.contains(kPrefix + "bc.subCode2"));
    EXPECT_EQ(attributes.value(kPrefix + "bc.holdButton"), "0");
    // The stamp is hexadecimal text and must keep every digit.
    EXPECT_TRUE(QRegularExpression("^[0-9A-F]{16,}$").match(attributes.value(kPrefix + "spoolTime")).hasMatch())
        << qPrintable(attributes.value(kPrefix + "spoolTime"));
}

TEST_F(JobsThroughCups, KeptCodesFillTheNextJobWithoutTyping)
{
    ASSERT_GT(print({ "--click", "mainCodeCB", "--type", "mainCodeText=77AB", "--click", "subCodeCB", "--type",
                      "subCodeText=9", "--click", "holdButton" }),
              0);
    const int second = print({});
    ASSERT_GT(second, 0);
    const QMap<QString, QString> attributes = environment->scheduler->jobAttributes(second);
    EXPECT_EQ(attributes.value(kPrefix + "bc.mainCodecb"), "1");
    EXPECT_EQ(attributes.value(kPrefix + "bc.mainCode"), hexOf("77AB"));
    EXPECT_EQ(attributes.value(kPrefix + "bc.subCodecb"), "1");
    EXPECT_EQ(attributes.value(kPrefix + "bc.subCode"), hexOf("9"));
    EXPECT_EQ(attributes.value(kPrefix + "bc.holdButton"), "1");
}

TEST_F(JobsThroughCups, BadQueuesAndChoicesSendNothing)
{
    struct Case
    {
        const char *what;
        QStringList arguments;
        const char *reasonPart;
    };
    const Case cases[] = {
        { "unknown printer", { "--no-dialog", "--printer", "nosuchqueue", sampleText() }, "unknown printer" },
        { "conflicting PPD choice", { "--no-dialog", "--printer", kQueue, "-o", "ARSubCode=On", sampleText() },
          "conflict" },
        { "locked field", { "--no-dialog", "--printer", kQueue, "--click", "holdButton", "--type", "mainCodeText=1",
                            sampleText() }, "mainCodeText" },
    };
    for (const Case &c : cases) {
        const RunResult result = runPdeprint(c.arguments, processEnvironment);
        EXPECT_GT(result.exitCode, 0) << c.what;
        EXPECT_EQ(result.err.count('\n'), 1) << c.what << ": " << qPrintable(result.err);
        EXPECT_TRUE(result.err.contains(QString::fromUtf8(c.reasonPart))) << c.what << ": " << qPrintable(result.err);
    }
    EXPECT_TRUE(environment->scheduler->jobIds().isEmpty());
}
