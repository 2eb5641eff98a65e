// Bad input: one line on stderr, a non-zero exit, nothing printed or sent.

#include "tests/host/PdeprintProcess.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace hosttest;

TEST(ErrorPaths, BadInputStopsWithOneLineAndNoTicket)
{
    QTemporaryDir config;
    const QStringList dryRun { "--no-dialog", "--dry-run", "--ppd", samplePpd(), "--printer", "demo" };
    struct Case
    {
        const char *what;
        QStringList arguments;
        const char *reasonPart;
    };
    const Case cases[] = {
        { "unknown option", QStringList { "--colour", sampleText() }, "unknown option --colour" },
        { "unreadable PPD", QStringList { "--no-dialog", "--dry-run", "--ppd", sampleText(), "--printer", "demo",
                                          sampleText() }, "not a readable PPD" },
        { "missing PPD", QStringList { "--no-dialog", "--dry-run", "--ppd", config.filePath("none.ppd"), "--printer",
                                       "demo", sampleText() }, "not a readable PPD" },
        { "unknown control", dryRun + QStringList { "--click", "printButton", sampleText() }, "printButton" },
        { "text for a button", dryRun + QStringList { "--type", "mainCodeCB=12", sampleText() },
          "not a text field" },
        { "click on a field", dryRun + QStringList { "--click", "mainCodeText", sampleText() }, "not a button" },
        { "missing file", dryRun + QStringList { config.filePath("gone.txt") }, "no such file" },
        { "non-printable file", dryRun + QStringList { QStringLiteral(PDEPRINT_EXECUTABLE) }, "cannot be printed" },
        { "no CUPS server", QStringList { "--no-dialog", "--printer", "demo", sampleText() }, "CUPS server" },
        { "no server for the queue's PPD", QStringList { "--no-dialog", "--dry-run", "--printer", "demo",
                                                         sampleText() }, "CUPS server" },
        { "screenshot without dialog", dryRun + QStringList { "--screenshot", config.filePath("x.png"), sampleText() },
          "needs the dialog" },
    };
    for (const Case &c : cases) {
        const RunResult result = runPdeprint(c.arguments, testEnvironment(config.path()));
        EXPECT_GT(result.exitCode, 0) << c.what;
        EXPECT_TRUE(result.out.isEmpty()) << c.what << ": " << qPrintable(result.out);
        EXPECT_EQ(result.err.count(QLatin1Char('\n')), 1) << c.what << ": " << qPrintable(result.err);
        EXPECT_TRUE(result.err.startsWith("pdeprint: ")) << c.what;
        EXPECT_TRUE(result.err.contains(QString::fromUtf8(c.reasonPart))) << c.what << ": " << qPrintable(result.err);
    }
}

TEST(ErrorPaths, DryRunPrintsSortedOptionsAndTheSummary)
{
    QTemporaryDir config;
    const RunResult result = runPdeprint({ "--no-dialog", "--dry-run", "--summary", "--ppd", samplePpd(), "--printer",
                                           "demo", "-o", "media=A4", "--copies", "2", "--click", "mainCodeCB", "--type",
                                           "mainCodeText=1234", sampleText() },
                                         testEnvironment(config.path()));
    ASSERT_EQ(result.exitCode, 0) << qPrintable(result.err);
    QStringList lines = result.out.split('\n', Qt::SkipEmptyParts);
    EXPECT_TRUE(lines.removeOne("Billing Code: Main Code: 1234")) << qPrintable(result.out);
    EXPECT_TRUE(lines.contains("copies=2"));
    EXPECT_TRUE(lines.contains("media=A4"));
    QStringList names;
    for (const QString &line : lines) {
        EXPECT_TRUE(line.contains('=')) << qPrintable(line);
        names << line.section('=', 0, 0);
    }
    QStringList sorted = names;
    sorted.sort();
    EXPECT_EQ(names, sorted) << "sorted by name, not by line";
}
