// Bad input: one line on stderr, a non-zero exit, nothing printed or sent; and
// what a good dry run prints instead.

#include "tests/host/PdeprintProcess.h"
#include "tests/support/TestSupport.h"

#include <gtest/gtest.h>

using namespace hosttest;

namespace {

// No scheduler here: nothing can be sent, and a run that needs one must say so.
const QStringList kDryRun { "--no-dialog", "--dry-run", "--ppd", pdetest::samplePpdPath(), "--printer", "demo" };

} // namespace

TEST(ErrorPaths, BadInputStopsWithOneLineAndNoTicket)
{
    qputenv("CUPS_SERVER", "127.0.0.1:1");
    const std::pair<QStringList, const char *> cases[] = {
        { { "--colour", sampleText() }, "unknown option --colour" },
        { { "--no-dialog", "--dry-run", "--ppd", sampleText(), "--printer", "demo", sampleText() }, "not a readable PPD" },
        { kDryRun + QStringList { "--click", "printButton", sampleText() }, "printButton" },
        { kDryRun + QStringList { "--type", "mainCodeCB=12", sampleText() }, "not a text field" },
        { kDryRun + QStringList { "--click", "mainCodeText", sampleText() }, "not a button" },
        // A field says what greys it and what to click.
        { kDryRun + QStringList { "--type", "mainCodeText=1", sampleText() }, "\"mainCodeCB\" is off; click" },
        { kDryRun + QStringList { "--click", "mainCodeCB", "--click", "holdButton", "--type", "mainCodeText=1", sampleText() },
          "kept; click \"holdButton\"" },
        { kDryRun + QStringList { QStringLiteral(PDEPRINT_EXECUTABLE) }, "cannot be printed" },
        { { "--no-dialog", "--printer", "demo", sampleText() }, "CUPS server" },
        { kDryRun + QStringList { "--screenshot", "x.png", sampleText() }, "needs the dialog" },
    };
    for (const auto &[arguments, reasonPart] : cases) {
        const RunResult result = runPdeprint(arguments);
        EXPECT_GT(result.exitCode, 0) << reasonPart;
        EXPECT_TRUE(result.out.isEmpty()) << reasonPart << ": " << qPrintable(result.out);
        EXPECT_EQ(result.err.count('\n'), 1) << qPrintable(result.err);
        EXPECT_TRUE(result.err.startsWith("pdeprint: ") && result.err.contains(reasonPart))
            << qPrintable(result.err);
    }
}

TEST(ErrorPaths, DryRunPrintsSortedOptionsAndTheSummary)
{
    const RunResult result = runPdeprint(kDryRun + QStringList { "--summary", "-o", "media=A4", "--copies", "2", "--click",
                                                                 "mainCodeCB", "--type", "mainCodeText=1234",
                                                                 sampleText() });
    ASSERT_EQ(result.exitCode, 0) << qPrintable(result.err);
    QStringList lines = result.out.split('\n', Qt::SkipEmptyParts);
    EXPECT_TRUE(lines.removeOne("Billing Code: Main Code: 1234")) << qPrintable(result.out);
    EXPECT_TRUE(lines.contains("copies=2") && lines.contains("media=A4")) << qPrintable(result.out);
    QStringList names;
    for (const QString &line : lines) {
        EXPECT_TRUE(line.contains('=')) << qPrintable(line);
        names << line.section('=', 0, 0);
    }
    QStringList sorted = names;
    sorted.sort();
    EXPECT_EQ(names, sorted) << "sorted by name, not by line";
}
