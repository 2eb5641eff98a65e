// The ticket's text helpers: spool time stamp, hex text, ASCII values,
// blanking of control characters, East Asian codesets.

#include "settings/TicketText.h"

#include "platform/PrintSettings.h"

#include <QRegularExpression>
#include <QTimeZone>

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace {

// Sets TZ for the test's lifetime.
class ScopedTimeZone
{
public:
    explicit ScopedTimeZone(const char *zone)
        : m_hadZone(qEnvironmentVariableIsSet("TZ"))
        , m_previous(qgetenv("TZ"))
    {
        qputenv("TZ", zone);
        tzset();
    }
    ~ScopedTimeZone()
    {
        if (m_hadZone)
            qputenv("TZ", m_previous);
        else
            qunsetenv("TZ");
        tzset();
    }

private:
    bool m_hadZone;
    QByteArray m_previous;
};

} // namespace

TEST(SpoolTime, StampOfAnInstantInItsZone)
{
    struct Case
    {
        const char *utc;
        int offsetSeconds;
        const char *stamp;
    } cases[] = {
        { "2024-03-05T00:07:03Z", 9 * 3600, "Tue, 5 Mar 2024 09:07:03 +0900" },
        { "2024-01-01T04:59:59.999Z", -5 * 3600, "Sun, 31 Dec 2023 23:59:59 -0500" },
        { "2024-01-01T00:00:00Z", 5 * 3600 + 1800, "Mon, 1 Jan 2024 05:30:00 +0550" },
        { "2024-02-29T18:20:00Z", 5 * 3600 + 2700, "Fri, 1 Mar 2024 00:05:00 +0575" },
        { "2024-07-14T02:00:00Z", -(3 * 3600 + 1800), "Sat, 13 Jul 2024 22:30:00 -0350" },
        { "2024-11-20T12:34:56Z", 0, "Wed, 20 Nov 2024 12:34:56 +0000" },
        { "2024-02-29T08:00:00Z", 0, "Thu, 29 Feb 2024 08:00:00 +0000" },
        { "2024-04-30T23:00:00Z", 3600, "Wed, 1 May 2024 00:00:00 +0100" },
        { "2024-06-09T10:00:00Z", 14 * 3600, "Mon, 10 Jun 2024 00:00:00 +1400" },
        { "2024-08-15T12:00:00Z", -12 * 3600, "Thu, 15 Aug 2024 00:00:00 -1200" },
        { "2024-09-02T00:00:00Z", -59 * 60, "Sun, 1 Sep 2024 23:01:00 -0098" },
        { "2024-10-12T00:00:00Z", 35, "Sat, 12 Oct 2024 00:00:35 +0000" },
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.stamp);
        const QDateTime utc = QDateTime::fromString(QString::fromLatin1(c.utc), Qt::ISODateWithMs);
        ASSERT_TRUE(utc.isValid());
        const QDateTime instant = utc.toTimeZone(QTimeZone(c.offsetSeconds));
        std::array<char, 64> buffer;
        buffer.fill('#');
        const int written = GetSpoolTime(buffer.data(), instant);
        EXPECT_STREQ(buffer.data(), c.stamp);
        EXPECT_EQ(written, int(strlen(c.stamp)));
    }
}

TEST(SpoolTime, StampOfNowTakesTheSystemZone)
{
    const QRegularExpression format(QStringLiteral(
        "^(Mon|Tue|Wed|Thu|Fri|Sat|Sun), [1-9][0-9]? (Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) "
        "[0-9]{4} [0-2][0-9]:[0-5][0-9]:[0-6][0-9] [+-][0-9]{4}$"));
    struct Case
    {
        const char *zone;
        const char *field;
    } cases[] = {
        { "JST-9", "+0900" },
        { "EST5", "-0500" },
        { "IST-5:30", "+0550" },
        { "UTC0", "+0000" },
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.zone);
        ScopedTimeZone zone(c.zone);
        std::array<char, 32> buffer;
        const int written = GetSpoolTime(buffer.data());
        const QString stamp = QString::fromLatin1(buffer.data());
        EXPECT_TRUE(format.match(stamp).hasMatch()) << buffer.data();
        EXPECT_TRUE(stamp.endsWith(QLatin1String(c.field))) << buffer.data();
        EXPECT_EQ(written, int(strlen(buffer.data())));
    }
}

TEST(HexText, EveryByteRoundTripsInUpperCase)
{
    std::array<unsigned char, 256> bytes;
    for (size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<unsigned char>(i);

    std::array<char, 2 * 256 + 2> text;
    text.fill('#');
    myitoa(bytes.data(), text.data(), uint32_t(bytes.size()));
    const QByteArray expected = QByteArray(reinterpret_cast<const char *>(bytes.data()), 256).toHex().toUpper();
    EXPECT_EQ(QByteArray(text.data()), expected);
    EXPECT_EQ(text[513], '#');

    std::array<unsigned char, 256 + 2> decoded;
    decoded.fill(0xA5);
    myatoi(text.data(), decoded.data(), 512);
    EXPECT_TRUE(std::equal(bytes.begin(), bytes.end(), decoded.begin()));
    EXPECT_EQ(decoded[256], 0);
    EXPECT_EQ(decoded[257], 0xA5);

    text.fill('#');
    myitoa(bytes.data(), text.data(), 0);
    EXPECT_STREQ(text.data(), "");
}

TEST(HexText, DecodingWithoutValidation)
{
    struct Case
    {
        const char *text;
        uint32_t length;
        QByteArray bytes; // the terminating zero follows
    } cases[] = {
        { "", 0, "" },
        { "31323334", 8, "1234" },
        { "ab", 2, "\xcb" },      // lower case decodes wrongly: 16*42+43
        { "aB", 2, "\xab" },      // a lower-case high digit comes out right mod 256
        { "Ab", 2, "\xcb" },
        { "A", 1, "\x70" },       // odd digit pairs with a zero byte: 16*10-48
        { "1F5", 3, "\x1f\x20" },
        { "1F5X", 3, "\x1f\x20" }, // nothing past the length is read
        { "0G", 2, "\x10" },       // 'G' counts as 16
        { "3132", 2, "1" },
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.text);
        std::array<unsigned char, 8> decoded;
        decoded.fill(0xA5);
        myatoi(c.text, decoded.data(), c.length);
        const size_t count = (c.length + 1) / 2;
        EXPECT_EQ(QByteArray(reinterpret_cast<const char *>(decoded.data()), qsizetype(count)), c.bytes);
        EXPECT_EQ(decoded[count], 0);
        EXPECT_EQ(decoded[count + 1], 0xA5);
    }
}

TEST(AsciiValue, StoresOrRemovesTheKey)
{
    const QString key = QStringLiteral("jp.co.nurat.print.PrintSettings.bc.mainCode");
    struct Case
    {
        const char *name;
        std::optional<QString> before;
        const char *value;
        std::optional<QString> after;
    } cases[] = {
        { "set", std::nullopt, "31323334", QStringLiteral("31323334") },
        { "replace", QStringLiteral("old"), "Zm9v+/==", QStringLiteral("Zm9v+/==") },
        { "empty removes", QStringLiteral("old"), "", std::nullopt },
        { "missing removes", QStringLiteral("old"), nullptr, std::nullopt },
        { "remove absent", std::nullopt, nullptr, std::nullopt },
        { "non-ASCII keeps", QStringLiteral("old"), "caf\xc3\xa9", QStringLiteral("old") },
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        pde::PrintSettings settings;
        settings.setValue(QStringLiteral("other"), QStringLiteral("1"));
        if (c.before)
            settings.setValue(key, c.before);
        MyPMPrintSetAsciiCStrValue(&settings, key, c.value);
        EXPECT_EQ(settings.value(key), c.after);
        EXPECT_EQ(settings.value(QStringLiteral("other")), QStringLiteral("1"));
    }

    pde::PrintSettings settings;
    MyPMPrintSetAsciiCStrValue(&settings, QString(), "1");
    EXPECT_TRUE(settings.keys().isEmpty());
    MyPMPrintSetAsciiCStrValue(nullptr, key, "1");
}

TEST(ReplaceSpaceCode, BlanksControlCharactersAndQuotesOnly)
{
    std::array<char, 257> buffer;
    for (size_t i = 0; i < 256; ++i)
        buffer[i] = char(i);
    buffer[256] = '\x01';

    // The walk goes on past the zero byte at the start and stops at the length.
    ReplaceSpaceCode(buffer.data(), 256);
    for (int byte = 0; byte < 256; ++byte) {
        const bool blanked = (byte >= 0x01 && byte <= 0x08) || (byte >= 0x0a && byte <= 0x1f) || byte == '"';
        EXPECT_EQ(static_cast<unsigned char>(buffer[size_t(byte)]), blanked ? 0x20 : byte) << "byte " << byte;
    }
    EXPECT_EQ(buffer[256], '\x01');

    for (int64_t length : { int64_t(0), int64_t(-1), INT64_MIN }) {
        char text[] = "\x01\"";
        ReplaceSpaceCode(text, length);
        EXPECT_STREQ(text, "\x01\"") << "length " << length;
    }
}

TEST(EastAsianEncoding, CodesetNames)
{
    struct Case
    {
        const char *codeset;
        bool latin;
    } cases[] = {
        { "UTF-8", true },       { "ANSI_X3.4-1968", true }, { "ISO-8859-1", true }, { "ISO-8859-15", true },
        { "CP1252", true },      { "KOI8-R", true },         { "TIS-620", true },    { "", true },
        { nullptr, true },       { "SHIFT_JIS", false },     { "sjis", false },      { "EUC-JP", false },
        { "eucJP", false },      { "ISO-2022-JP", false },   { "BIG5", false },      { "BIG5-HKSCS", false },
        { "EUC-TW", false },     { "EUC-KR", false },        { "GB2312", false },    { "GBK", false },
        { "GB18030", false },    { "EUC-CN", false },        { "CP949", false },     { "EUC-JP-extra", true },
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.codeset ? c.codeset : "(null)");
        EXPECT_EQ(encodingWindowsLatin1(c.codeset), c.latin);
    }
    // The locales this machine has are not East Asian.
    EXPECT_TRUE(encodingWindowsLatin1());
}
