// Bad input: one line on stderr, exit 2 for a wrong command line and 1 for the
// rest, nothing printed or sent; and what a good dry run and the panel list print.

#include "platform/UserDefaults.h"
#include "tests/host/PdeprintProcess.h"
#include "tests/support/TestSupport.h"

#include <QDir>
#include <QTemporaryDir>

#include <algorithm>

#include <gtest/gtest.h>

using namespace hosttest;

namespace {

// No scheduler here: nothing can be sent, and a run that needs one must say so.
const QStringList kDryRun { "--no-dialog", "--dry-run", "--ppd", pdetest::samplePpdPath(), "--printer", "demo" };

QStringList dryRun(const QStringList &extra, const QString &file = sampleText())
{
    return kDryRun + extra + QStringList { file };
}

} // namespace

TEST(ErrorPaths, BadInputStopsWithOneLineAndNoTicket)
{
    qputenv("CUPS_SERVER", "127.0.0.1:1");
    QTemporaryDir dir;
    ASSERT_TRUE(pdetest::writeFile(dir.filePath("nothing.txt"), {}));
    // The command line's own mistakes exit with 2, bad input with 1.
    const struct { QStringList arguments; const char *reasonPart; int exitCode = 1; } cases[] = {
        { { "--colour", sampleText() }, "unknown option --colour", 2 },
        { { "--printer" }, "--printer needs a value", 2 },
        { { "--dry-run=yes", sampleText() }, "takes no value", 2 },
        { { "--dry-run" }, "no file", 2 },
        { { "--dry-run", "-" }, "standard input", 2 },
        { { "--codes", "--agent" }, "choose one of", 2 },
        { { "--codes", "--release-kept" }, "choose one of", 2 },
        { { "--codes", "--no-dialog" }, "opens a window", 2 },
        { { "--check", sampleText() }, "--check takes only", 2 },
        { { "--users", "5", sampleText() }, "--users goes with --check", 2 },
        { { "--check", "--users", "0" }, "--users wants a number", 2 },
        { { "--check" }, "cannot reach the CUPS server", 2 },
        { dryRun({ "--type", "=1" }), "NAME=TEXT", 2 },
        { dryRun({ "-o", "novalue" }), "NAME=VALUE", 2 },
        { dryRun({ "--copies", "0" }), "--copies", 2 },
        { dryRun({ "--pages", "3-1" }), "--pages", 2 },
        { dryRun({ "--pages", "1-2-3" }), "--pages", 2 },
        { dryRun({ "--sides", "both" }), "--sides", 2 },
        { { "--no-dialog", "--dry-run", "--ppd", sampleText(), "--printer", "demo", sampleText() }, "not a readable PPD" },
        { dryRun({ "--click", "printButton" }), "printButton" },
        { dryRun({ "--type", "mainCodeCB=12" }), "not a text field" },
        { dryRun({ "--click", "mainCodeText" }), "not a button" },
        { dryRun({ "--click", "subCodeCB" }), "\"subCodeCB\" is disabled" },
        // A field says what greys it and what to click.
        { dryRun({ "--type", "mainCodeText=1" }), "\"mainCodeCB\" is off; click" },
        { dryRun({ "--click", "mainCodeCB", "--click", "holdButton", "--type", "mainCodeText=1" }),
          "kept; click \"holdButton\"" },
        // The PPD's constraints: the sub code needs the main code, which then cannot go.
        { dryRun({ "-o", "ARSubCode=On" }), "ARSubCode=On: not a choice of the printer, or in conflict" },
        { dryRun({ "-o", "ARMainCode=Sometimes" }), "ARMainCode=Sometimes" },
        { dryRun({ "-o", "ARMainCode=On", "-o", "ARSubCode=On", "-o", "ARMainCode=Off" }), "ARMainCode=Off" },
        { dryRun({}, QStringLiteral(PDEPRINT_EXECUTABLE)), "cannot be printed" },
        { dryRun({}, dir.filePath("missing.txt")), "no such file" },
        { dryRun({}, dir.path()), "not a regular file" },
        { dryRun({}, dir.filePath("nothing.txt")), "empty file" },
        { { "--no-dialog", "--printer", "demo", sampleText() }, "CUPS server" },
        { dryRun({ "--screenshot", "x.png" }), "needs the dialog" },
    };
    for (const auto &[arguments, reasonPart, exitCode] : cases) {
        const RunResult result = runPdeprint(arguments);
        EXPECT_EQ(result.exitCode, exitCode) << reasonPart;
        EXPECT_TRUE(result.out.isEmpty()) << reasonPart << ": " << qPrintable(result.out);
        EXPECT_EQ(result.err.count('\n'), 1) << qPrintable(result.err);
        EXPECT_TRUE(result.err.startsWith("pdeprint: ") && result.err.contains(reasonPart))
            << qPrintable(result.err);
    }
}

// The dialog's settings, the command line's options and the panels' ticket
// and account code (which win), one sorted name=value a line; the PPD
// options the panel handles stay out.
TEST(ErrorPaths, DryRunPrintsSortedOptionsTheTicketAndTheSummary)
{
    QTemporaryDir dir;
    const QString pdf = dir.filePath("renamed.bin");
    ASSERT_TRUE(pdetest::writeFile(pdf, "%PDF-1.4\n1 0 obj\n<<>>\nendobj\ntrailer\n<<>>\n%%EOF\n"));
    // The queue's record, which a dry run leaves as it was: no codes kept, no set-up rewritten.
    const QString record = pde::UserDefaults::fileNameForDomain(QStringLiteral("jp.co.nurat.mfp.demo"));
    ASSERT_TRUE(pdetest::writeFile(record, "{}"));
    const RunResult result = runPdeprint(kDryRun + QStringList {
        "--summary", "-o", "media=A4", "--copies=2", "--pages", "3-3,5,7-", "--sides", "two-sided-long-edge", "-o",
        "ARMainCode=On", "-o", "ARSubCode=On", "-o", kTicketPrefix + "bc.mainCode=FF", "-o", "job-billing=APP", "--click",
        "mainCodeCB", "--type=mainCodeText=12=34", "--click", "holdButton", sampleText(), pdf });
    ASSERT_EQ(result.exitCode, 0) << qPrintable(result.err);
    EXPECT_EQ(QString::fromUtf8(pdetest::readFile(record)), "{}");
    EXPECT_EQ(QDir(pde::UserDefaults::preferencesDirectory()).entryList(QDir::Files | QDir::Hidden).size(), 1);
    QStringList lines = result.out.split('\n', Qt::SkipEmptyParts);
    EXPECT_TRUE(lines.removeOne("Billing Code: Main Code: 12=34")) << qPrintable(result.out);
    for (const QString &line : QStringList { "copies=2", "media=A4", "page-ranges=3-3,5,7-", "sides=two-sided-long-edge",
                                 kTicketPrefix + "bc.mainCodecb=1", kTicketPrefix + "bc.mainCode=31323D3334",
                                 "job-account-id=12=34", "job-billing=12=34" })
        EXPECT_TRUE(lines.contains(line)) << qPrintable(line) << " in " << qPrintable(result.out);
    QStringList names;
    for (const QString &line : lines)
        names << line.section('=', 0, 0);
    EXPECT_FALSE(names.contains("ARMainCode") || names.contains("ARSubCode")) << qPrintable(result.out);
    EXPECT_TRUE(std::is_sorted(names.cbegin(), names.cend())) << "sorted by name, not by line";
    EXPECT_EQ(runPdeprint({ "--list-panels" }).out.section('\t', 0, 0), "Billing Code");
}
