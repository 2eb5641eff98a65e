// Command-line parsing: what is accepted, in which order, and what is refused.

#include "host/CommandLine.h"

#include <gtest/gtest.h>

using namespace pdeprint;

namespace {

QStringList args(std::initializer_list<const char *> list)
{
    QStringList result;
    for (const char *a : list)
        result << QString::fromUtf8(a);
    return result;
}

} // namespace

TEST(CommandLine, ClicksAndTypingKeepTheirOrderAcrossBothSpellings)
{
    const ParseResult parsed = parseCommandLine(args({ "--type=mainCodeText=12=34", "--click", "mainCodeCB",
                                                       "--type", "subCodeText=", "--click=holdButton", "f.txt" }));
    ASSERT_TRUE(parsed.options) << qPrintable(parsed.error);
    const std::vector<ControlAction> expected {
        { ControlAction::Kind::Type, "mainCodeText", "12=34" },
        { ControlAction::Kind::Click, "mainCodeCB", {} },
        { ControlAction::Kind::Type, "subCodeText", "" },
        { ControlAction::Kind::Click, "holdButton", {} },
    };
    EXPECT_EQ(parsed.options->actions, expected);
    EXPECT_EQ(parsed.options->files, QStringList { "f.txt" });
}

TEST(CommandLine, ValuesLandInTheirOptions)
{
    const ParseResult parsed = parseCommandLine(args({ "--no-dialog", "--dry-run", "--summary", "--printer", "q/inst",
                                                       "--ppd", "a.ppd", "--plugins", "d1", "--plugins=d2", "-o",
                                                       "media=A4", "--copies", "3", "--pages", "1-3,5,7-",
                                                       "--sides", "two-sided-long-edge", "--", "--odd-name" }));
    ASSERT_TRUE(parsed.options) << qPrintable(parsed.error);
    const Options &o = *parsed.options;
    EXPECT_EQ(o.mode, DialogMode::Headless);
    EXPECT_TRUE(o.dryRun && o.summary);
    EXPECT_EQ(o.printer, "q/inst");
    EXPECT_EQ(o.ppdFile, "a.ppd");
    EXPECT_EQ(o.pluginFolders, (QStringList { "d1", "d2" }));
    ASSERT_EQ(o.jobOptions.size(), 1u);
    EXPECT_EQ(o.jobOptions[0], std::make_pair(QString("media"), QString("A4")));
    EXPECT_EQ(o.copies, 3);
    EXPECT_EQ(o.pageRanges, "1-3,5,7-");
    EXPECT_EQ(o.sides, "two-sided-long-edge");
    EXPECT_EQ(o.files, QStringList { "--odd-name" }) << "-- ends the options";
}

TEST(CommandLine, ListHelpAndVersionNeedNoFile)
{
    for (const char *flag : { "--list-panels", "--help", "-h", "--version" })
        EXPECT_TRUE(parseCommandLine(args({ flag })).options) << flag;
}

TEST(CommandLine, BadCommandLinesAreRefusedWithAReason)
{
    struct Case
    {
        std::initializer_list<const char *> arguments;
        const char *reasonPart;
    };
    const Case cases[] = {
        { { "--frobnicate", "f" }, "unknown option --frobnicate" },
        { { "-x", "f" }, "unknown option -x" },
        { { "--printer" }, "--printer needs a value" },
        { { "--type", "mainCodeText", "f" }, "NAME=TEXT" },
        { { "--type", "=1234", "f" }, "NAME=TEXT" },
        { { "-o", "novalue", "f" }, "NAME=VALUE" },
        { { "--copies", "0", "f" }, "--copies" },
        { { "--copies", "two", "f" }, "--copies" },
        { { "--pages", "3-1", "f" }, "--pages" },
        { { "--pages", "0", "f" }, "--pages" },
        { { "--pages", "1-2-3", "f" }, "--pages" },
        { { "--sides", "both", "f" }, "--sides" },
        { { "--dry-run=yes", "f" }, "takes no value" },
        { { "--dry-run" }, "no file" },
        { { "-" }, "standard input" },
    };
    for (const Case &c : cases) {
        const ParseResult parsed = parseCommandLine(args(c.arguments));
        EXPECT_FALSE(parsed.options) << c.reasonPart;
        EXPECT_TRUE(parsed.error.contains(QString::fromUtf8(c.reasonPart))) << qPrintable(parsed.error);
        EXPECT_FALSE(parsed.error.contains(QLatin1Char('\n')));
    }
}
