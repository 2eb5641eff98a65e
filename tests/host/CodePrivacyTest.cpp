// Who can read a job's billing codes on the server: with the shipped policy
// lines, the job's owner and nobody else; without them, anyone. The second
// half shows the exposure, so that a scheduler that changes its defaults is
// noticed.

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

namespace {

constexpr char kQueue[] = "office";
const QStringList kCodeKeys { "bc.mainCode", "bc.mainCode2", "bc.subCode", "bc.subCode2" };
const QStringList kSteps { "--click", "mainCodeCB", "--type", "mainCodeText=4711",
                           "--click", "subCodeCB",  "--type", "subCodeText=42" };

// The lines an administrator copies from the shipped file.
QStringList shippedPolicyLines()
{
    QFile file(QStringLiteral(PDE_SOURCE_DIR "/examples/billing-codes-private.policy"));
    file.open(QIODevice::ReadOnly);
    return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n')).filter(QRegularExpression("^(?!#)\\s*\\S"));
}

// The code-bearing keys of the job that `user` is shown.
QStringList codeKeysSeenBy(int jobId, const char *user)
{
    const QMap<QString, QString> attributes = pdetest::jobAttributes(jobId, user);
    QStringList seen = kCodeKeys;
    seen.removeIf([&](const QString &key) { return !attributes.contains(kPrefix + key); });
    return seen;
}

} // namespace

TEST(CodePrivacy, TheShippedPolicyShowsTheCodesToTheOwnerOnly)
{
    ASSERT_EQ(shippedPolicyLines().size(), 2);
    for (const bool withPolicy : { true, false }) {
        SCOPED_TRACE(withPolicy ? "with the policy lines" : "with CUPS's defaults");
        QTemporaryDir config;
        qputenv("XDG_CONFIG_HOME", config.path().toUtf8());
        pdetest::PrivateScheduler scheduler;
        ASSERT_EQ(scheduler.start({ .queues = { { kQueue, true, {} } },
                                    .policyLines = withPolicy ? shippedPolicyLines() : QStringList() }),
                  QString());

        const RunResult printed = runPdeprint(QStringList { "--no-dialog", "--printer", kQueue } + kSteps
                                              + QStringList { sampleText() });
        const int job = pdetest::jobIdIn(printed.out);
        ASSERT_GT(job, 0) << qPrintable(printed.err);
        EXPECT_EQ(codeKeysSeenBy(job, cupsUser()), kCodeKeys);
        EXPECT_EQ(codeKeysSeenBy(job, "mallory"), withPolicy ? QStringList() : kCodeKeys);
        if (!withPolicy)
            continue;

        // The owner's own requests still work: a job held for codes is released with them.
        const int held = pdetest::lp(kQueue);
        ASSERT_GT(held, 0);
        const RunResult released = runPdeprint(QStringList { "--release", QString::number(held) } + kSteps);
        EXPECT_EQ(released.exitCode, 0) << qPrintable(released.err);
        EXPECT_EQ(scheduler.received(held).value(kPrefix + "bc.mainCode"), "34373131");
        EXPECT_EQ(codeKeysSeenBy(held, "mallory"), QStringList());
    }
}
