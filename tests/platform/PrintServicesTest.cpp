#include "platform/PrintSettings.h"

#include <gtest/gtest.h>

namespace {

TEST(PrintSettings, StatusCodesAndRemovalOfOneKey)
{
    pde::PrintSettings settings;
    const QString key = QStringLiteral("spoolTime"), other = QStringLiteral("other");
    QString value = QStringLiteral("untouched");
    EXPECT_EQ(PMPrintSettingsGetValue(&settings, key, &value), kPMKeyNotFound);
    EXPECT_EQ(value, QStringLiteral("untouched"));
    EXPECT_EQ(PMPrintSettingsGetValue(nullptr, key, &value), kPMInvalidParameter);
    EXPECT_EQ(PMPrintSettingsSetValue(nullptr, key, QStringLiteral("1"), false), kPMInvalidParameter);

    EXPECT_EQ(PMPrintSettingsSetValue(&settings, key, QStringLiteral("0A1B"), false), noErr);
    EXPECT_EQ(PMPrintSettingsSetValue(&settings, other, QStringLiteral("2"), true), noErr);
    EXPECT_EQ(PMPrintSettingsGetValue(&settings, key, &value), noErr);
    EXPECT_EQ(value, QStringLiteral("0A1B"));
    // No value removes the key and only it; removing what is not there is no error.
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(PMPrintSettingsSetValue(&settings, key, std::nullopt, false), noErr);
        EXPECT_EQ(settings.keys(), QStringList { other });
    }
}

} // namespace
