#include "plugin/HostUtilities.h"
#include "tests/support/TestSupport.h"

#include <tuple>

#include <gtest/gtest.h>

namespace {

TEST(SystemVersion, PartsOverwriteOnlyTheirDefaults)
{
    const struct { const char *file; qint32 major, minor, bugFix; bool leopardOrLater; } cases[] = {
        { "os-release-10.4.11", 10, 4, 11, false }, { "os-release-10.5", 10, 5, 9, true },
        { "os-release-10.15.7", 10, 15, 7, true },  { "os-release-11.0", 11, 0, 9, true },
        { "os-release-12", 12, 8, 9, true },        { "os-release-none", 7, 8, 9, false },
        { "os-release-empty", 0, 8, 9, false },     { "no-such-os-release", 7, 8, 9, false },
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.file);
        const QString path = pdetest::testDataPath(QString::fromLatin1(c.file));
        qint32 major = 7, minor = 8, bugFix = 9;
        get_system_version(&major, &minor, &bugFix, path);
        EXPECT_EQ((std::tuple { major, minor, bugFix }), (std::tuple { c.major, c.minor, c.bugFix }));
        EXPECT_EQ(runningOnLeopardOrLater(path), c.leopardOrLater);
    }
}

// The names the sample PPDs do not carry (the panel's creation decodes those), and names that
// match only in part or in another case.
TEST(PpdEncoding, NamesMatchWholeAndCaseSensitive)
{
    const struct { const char *name; pde::StringEncoding encoding; } cases[] = {
        { "ISOLatin1", pde::kStringEncodingISOLatin1 }, { "WindowsANSI", pde::kStringEncodingWindowsLatin1 },
        { "UTF-8", pde::kStringEncodingUTF8 },          { "isolatin1", pde::kStringEncodingMacRoman },
        { "UTF-8 ", pde::kStringEncodingMacRoman },     { "JIS83", pde::kStringEncodingMacRoman },
    };
    for (const auto &c : cases) {
        ppd_file_t ppd {};
        ppd.lang_encoding = const_cast<char *>(c.name);
        EXPECT_EQ(getEncodingFromPPD(&ppd), c.encoding) << c.name;
    }
    EXPECT_EQ(getEncodingFromPPD(nullptr), pde::kStringEncodingMacRoman);
}

} // namespace
