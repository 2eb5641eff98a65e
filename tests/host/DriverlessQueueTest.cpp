// Billing codes through a driverless queue (lpadmin -m everywhere) to an IPP
// Everywhere printer that takes job-account-id: the printer receives the main
// code from pdeprint's jobs, from the agent's releases and from the Billing
// info of another application's dialog, and the page log records it. The
// agent leaves alone a driverless queue whose printer does without accounts.

#include "tests/host/PdeprintProcess.h"
#include "tests/support/CupsJobs.h"
#include "tests/support/PrivateIppPrinter.h"
#include "tests/support/PrivateScheduler.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace hosttest;
using pdetest::lp;

namespace {

constexpr char kDriverless[] = "mfp";
constexpr char kNoAccounts[] = "unbilled";
// The line the README gives administrators.
constexpr char kPageLogFormat[] =
    "PageLogFormat %p %u %j %T %P %C %{job-billing} %{job-originating-host-name} %{job-name} %{media} %{sides}";

// The printers come first: the queues are made from what they report.
struct PrinterEnvironment : ::testing::Environment
{
    void SetUp() override { error = printer.start() + withoutAccounts.start(); }
    pdetest::PrivateIppPrinter printer;
    pdetest::PrivateIppPrinter withoutAccounts { false };
    QString error;
};
auto *const printerEnvironment = static_cast<PrinterEnvironment *>(::testing::AddGlobalTestEnvironment(new PrinterEnvironment));
pdetest::SchedulerEnvironment *const environment = pdetest::SchedulerEnvironment::add(
    { .queues = { { kDriverless, true, "everywhere", false, printerEnvironment->printer.uri() },
                  { kNoAccounts, true, "everywhere", false, printerEnvironment->withoutAccounts.uri() } },
      .extraLines = { kPageLogFormat } });

using DriverlessQueue = pdetest::SchedulerTest;

} // namespace

TEST_F(DriverlessQueue, TheMainCodeReachesThePrinterAsItsAccountIdAndThePageLog)
{
    ASSERT_TRUE(printerEnvironment->error.isEmpty()) << qPrintable(printerEnvironment->error);
    pdetest::PrivateIppPrinter &printer = printerEnvironment->printer;
    // The placeholder of a printer that requires a code: no code of the user's.
    ASSERT_EQ(QProcess::execute("lpadmin", { "-p", kDriverless, "-o", "job-account-id-default=none" }), 0);
    const RunResult printed = runPdeprint({ "--no-dialog", "--printer", kDriverless, "--click", "mainCodeCB", "--type",
                                            "mainCodeText=4711", "--click", "subCodeCB", "--type", "subCodeText=9",
                                            sampleText() });
    ASSERT_EQ(printed.exitCode, 0) << qPrintable(printed.err);
    EXPECT_EQ(printer.accountIdReceived("sample.txt"), "4711");

    // Typed into another application's dialog: the job opens with it and
    // only needs confirming.
    const int billed = lp(kDriverless, nullptr, { "-t", "billed", "-o", "job-billing=BILL-7" });
    const RunResult held = runPdeprint({ "--held" });
    EXPECT_TRUE(held.out.startsWith(QStringLiteral("%1\t%2\t").arg(billed).arg(kDriverless))) << qPrintable(held.out);
    EXPECT_EQ(runPdeprint({ "--release", QString::number(billed) }).exitCode, 0);
    EXPECT_EQ(printer.accountIdReceived("billed"), "BILL-7");
    EXPECT_EQ(pdetest::jobAttributes(billed).value(kTicketPrefix + "bc.mainCode"), "42494C4C2D37") << "the panel showed it";

    // The agent serves the driverless queue without being told to, and only that one.
    const int unserved = lp(kNoAccounts);
    Agent agent({ "--click", "mainCodeCB", "--type", "mainCodeText=55" });
    const int plain = lp(kDriverless, nullptr, { "-t", "plain" });
    EXPECT_EQ(printer.accountIdReceived("plain"), "55");
    EXPECT_EQ(agent.stop(), QStringLiteral("released job %1 on %2\n").arg(plain).arg(kDriverless));
    EXPECT_EQ(pdetest::jobState(unserved), IPP_JSTATE_HELD);

    // The page log is written when the scheduler hears the job finished.
    const std::pair<int, const char *> expected[] = { { pdetest::jobIdIn(printed.out), "4711" }, { billed, "BILL-7" },
                                                      { plain, "55" } };
    const auto logged = [&](int job, const char *code) {
        return scheduler().pageLog().contains(QRegularExpression(QStringLiteral("(?m)^%1 \\S+ %2 .* %3 ").arg(kDriverless).arg(job).arg(code)));
    };
    pdetest::waitUntil([&] { return logged(plain, "55"); });
    for (const auto &[job, code] : expected)
        EXPECT_TRUE(logged(job, code)) << code << " in\n" << qPrintable(scheduler().pageLog());
}
