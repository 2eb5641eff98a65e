// Command-line parsing: what is accepted, in which order, and what is refused.

#include "host/CommandLine.h"

#include <gtest/gtest.h>

using namespace pdeprint;

TEST(CommandLine, ValuesLandInTheirOptionsAndControlStepsKeepTheirOrder)
{
    const ParseResult parsed = parseCommandLine({ "--no-dialog", "--dry-run", "--summary", "--printer", "q/inst", "--ppd",
                                                  "a.ppd", "--plugins", "d1", "--plugins=d2", "-o", "media=A4", "--copies",
                                                  "3", "--type=mainCodeText=12=34", "--click", "mainCodeCB", "--pages",
                                                  "1-3,5,7-", "--sides", "two-sided-long-edge", "--type", "subCodeText=",
                                                  "--click=holdButton", "--", "--odd-name" });
    ASSERT_TRUE(parsed.options) << qPrintable(parsed.error);
    const Options &o = *parsed.options;
    EXPECT_EQ(o.mode, DialogMode::Headless);
    EXPECT_TRUE(o.dryRun && o.summary);
    EXPECT_EQ(o.printer, "q/inst");
    EXPECT_EQ(o.ppdFile, "a.ppd");
    EXPECT_EQ(o.pluginFolders, (QStringList { "d1", "d2" }));
    EXPECT_EQ(o.jobOptions, (std::vector<std::pair<QString, QString>> { { "media", "A4" } }));
    EXPECT_EQ(o.copies, 3);
    EXPECT_EQ(o.pageRanges, "1-3,5,7-");
    EXPECT_EQ(o.sides, "two-sided-long-edge");
    EXPECT_EQ(o.files, QStringList { "--odd-name" }) << "-- ends the options";
    const std::vector<ControlAction> steps {
        { ControlAction::Kind::Type, "mainCodeText", "12=34" }, { ControlAction::Kind::Click, "mainCodeCB", {} },
        { ControlAction::Kind::Type, "subCodeText", "" }, { ControlAction::Kind::Click, "holdButton", {} },
    };
    EXPECT_EQ(o.actions, steps);
    for (const char *flag : { "--list-panels", "--help", "-h", "--version", "--codes" })
        EXPECT_TRUE(parseCommandLine({ flag }).options) << flag << " needs no file";
}

TEST(CommandLine, BadCommandLinesAreRefusedWithAOneLineReason)
{
    const std::pair<QStringList, const char *> cases[] = {
        { { "--frobnicate", "f" }, "unknown option --frobnicate" },
        { { "--printer" }, "--printer needs a value" },
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
        { { "--codes", "--agent" }, "choose one of" },
        { { "--codes", "--release-kept" }, "choose one of" },
        { { "--codes", "--no-dialog" }, "opens a window" },
    };
    for (const auto &[arguments, reasonPart] : cases) {
        const ParseResult parsed = parseCommandLine(arguments);
        EXPECT_FALSE(parsed.options) << reasonPart;
        EXPECT_TRUE(parsed.error.contains(QString::fromUtf8(reasonPart)) && !parsed.error.contains('\n'))
            << qPrintable(parsed.error);
    }
}
