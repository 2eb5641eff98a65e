#include "platform/PrintSession.h"
#include "platform/PrintSettings.h"

#include <gtest/gtest.h>

namespace {

using pde::PrintSettings;

TEST(PrintSettings, GetAndSetAnswerStatusCodes)
{
    PrintSettings settings;
    const QString key = QStringLiteral("jp.co.nurat.print.PrintSettings.spoolTime");
    QString value = QStringLiteral("untouched");

    EXPECT_EQ(PMPrintSettingsGetValue(&settings, key, &value), kPMKeyNotFound);
    EXPECT_EQ(value, QStringLiteral("untouched"));
    EXPECT_EQ(PMPrintSettingsGetValue(nullptr, key, &value), kPMInvalidParameter);
    EXPECT_EQ(PMPrintSettingsGetValue(&settings, key, nullptr), kPMInvalidParameter);
    EXPECT_EQ(PMPrintSettingsSetValue(nullptr, key, QStringLiteral("1"), false), kPMInvalidParameter);

    EXPECT_EQ(PMPrintSettingsSetValue(&settings, key, QStringLiteral("0A1B"), false), noErr);
    EXPECT_EQ(PMPrintSettingsGetValue(&settings, key, &value), noErr);
    EXPECT_EQ(value, QStringLiteral("0A1B"));
    EXPECT_EQ(PMPrintSettingsSetValue(&settings, key, QStringLiteral("FF"), true), noErr);
    EXPECT_EQ(settings.value(key), QStringLiteral("FF"));
}

TEST(PrintSettings, NoValueRemovesTheKeyAndOnlyIt)
{
    PrintSettings settings;
    const QString a = QStringLiteral("a"), b = QStringLiteral("b");
    PMPrintSettingsSetValue(&settings, a, QStringLiteral("1"), false);
    PMPrintSettingsSetValue(&settings, b, QStringLiteral("2"), false);
    EXPECT_EQ(PMPrintSettingsSetValue(&settings, a, std::nullopt, false), noErr);
    EXPECT_EQ(settings.keys(), QStringList { b });
    QString value;
    EXPECT_EQ(PMPrintSettingsGetValue(&settings, a, &value), kPMKeyNotFound);
    // Removing what is not there is no error.
    EXPECT_EQ(PMPrintSettingsSetValue(&settings, a, std::nullopt, false), noErr);
    EXPECT_EQ(settings.keys(), QStringList { b });
}

TEST(PrintSession, CurrentPrinterAndItsIdentifier)
{
    const pde::Printer *printer = reinterpret_cast<const pde::Printer *>(&printer);
    EXPECT_EQ(PMSessionGetCurrentPrinter(nullptr, &printer), kPMInvalidPrinter);
    EXPECT_EQ(printer, nullptr);

    pde::PrintSession session;
    EXPECT_EQ(PMSessionGetCurrentPrinter(&session, nullptr), kPMInvalidParameter);
    printer = reinterpret_cast<const pde::Printer *>(&printer);
    EXPECT_EQ(PMSessionGetCurrentPrinter(&session, &printer), kPMInvalidPrinter);
    EXPECT_EQ(printer, nullptr);

    const struct { QString name, instance, id; } cases[] = {
        { QStringLiteral("office"), QString(), QStringLiteral("office") },
        { QStringLiteral("office"), QStringLiteral("duplex"), QStringLiteral("office/duplex") },
    };
    for (const auto &c : cases) {
        session.setCurrentPrinter(pde::Printer { c.name, c.instance });
        ASSERT_EQ(PMSessionGetCurrentPrinter(&session, &printer), noErr);
        ASSERT_NE(printer, nullptr);
        EXPECT_EQ(PMPrinterGetID(printer), c.id);
    }
    EXPECT_EQ(PMPrinterGetID(nullptr), QString());
}

} // namespace
