#include "platform/PrintSettings.h"

#include <gtest/gtest.h>

namespace {

// Removal of a key is proven by the ticket tests; callers act on the status.
TEST(PrintSettings, StatusCodes)
{
    pde::PrintSettings settings;
    QString value = QStringLiteral("untouched");
    EXPECT_EQ(PMPrintSettingsGetValue(&settings, QStringLiteral("spoolTime"), &value), kPMKeyNotFound);
    EXPECT_EQ(value, QStringLiteral("untouched"));
    EXPECT_EQ(PMPrintSettingsGetValue(nullptr, QStringLiteral("spoolTime"), &value), kPMInvalidParameter);
    EXPECT_EQ(PMPrintSettingsSetValue(nullptr, QStringLiteral("spoolTime"), QStringLiteral("1"), false), kPMInvalidParameter);
}

} // namespace
