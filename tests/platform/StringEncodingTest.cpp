#include "platform/StringEncoding.h"

#include <clocale>
#include <string>

#include <gtest/gtest.h>

#include <ostream>

namespace {

using namespace pde;

QByteArray bytesOf(const QString &text, qsizetype maxCharacters, StringEncoding encoding, qsizetype maxBytes,
                   EncodedBytes *counts = nullptr)
{
    QByteArray buffer(64, '\x7f');
    const EncodedBytes result = bytesFromString(text, maxCharacters, encoding, buffer.data(), qMin(maxBytes, buffer.size()));
    if (counts)
        *counts = result;
    // Nothing past the reported bytes may be touched.
    EXPECT_EQ(buffer.mid(result.bytes).count('\x7f'), buffer.size() - result.bytes);
    return buffer.left(result.bytes);
}

struct RoundTrip
{
    StringEncoding encoding;
    const char16_t *text;
    QByteArray bytes;
};

// Test names stay readable (and stable) in ctest's listing.
void PrintTo(const RoundTrip &c, std::ostream *os)
{
    *os << "encoding " << c.encoding;
}

class StringEncodingRoundTrip : public ::testing::TestWithParam<RoundTrip>
{
};

TEST_P(StringEncodingRoundTrip, ConvertsBothWays)
{
    const RoundTrip &c = GetParam();
    const QString text = QString::fromUtf16(c.text);
    EncodedBytes counts;
    EXPECT_EQ(bytesOf(text, text.size(), c.encoding, 64, &counts).toHex(), c.bytes.toHex());
    EXPECT_EQ(counts.characters, text.size());
    const auto decoded = stringFromBytes(c.bytes, c.encoding);
    ASSERT_TRUE(decoded);
    EXPECT_EQ(*decoded, text);
}

INSTANTIATE_TEST_SUITE_P(EveryNumber, StringEncodingRoundTrip, ::testing::Values(
    RoundTrip { kStringEncodingASCII, u"A1 b:~", "A1 b:~" },
    RoundTrip { kStringEncodingUTF8, u"\u00dc\u20ac\u90e8", "\xc3\x9c\xe2\x82\xac\xe9\x83\xa8" },
    RoundTrip { kStringEncodingISOLatin1, u"\u00dc\u00ff?", "\xdc\xff?" },
    RoundTrip { kStringEncodingShiftJIS, u"\u90e8\u9580A\uff71\u8868", "\x95\x94\x96\xe5" "A\xb1\x95\x5c" },
    RoundTrip { kStringEncodingWindowsLatin1, u"\u20ac\u00dc\u2122", "\x80\xdc\x99" },
    RoundTrip { kStringEncodingMacRoman, u"\u00dc\u20ac\u03c0\u00e9", "\x86\xdb\xb9\x8e" }));

struct Truncation
{
    const char *name;
    StringEncoding encoding;
    const char16_t *text;
    qsizetype maxCharacters;
    qsizetype maxBytes;
    qsizetype characters;
    QByteArray bytes;
};

void PrintTo(const Truncation &c, std::ostream *os)
{
    *os << c.name;
}

class StringEncodingTruncation : public ::testing::TestWithParam<Truncation>
{
};

TEST_P(StringEncodingTruncation, StopsWhereItMust)
{
    const Truncation &c = GetParam();
    EncodedBytes counts;
    const QByteArray bytes = bytesOf(QString::fromUtf16(c.text), c.maxCharacters, c.encoding, c.maxBytes, &counts);
    EXPECT_EQ(bytes.toHex(), c.bytes.toHex());
    EXPECT_EQ(counts.characters, c.characters);
    EXPECT_EQ(counts.bytes, c.bytes.size());
}

INSTANTIATE_TEST_SUITE_P(Limits, StringEncodingTruncation, ::testing::Values(
    // The first character the encoding cannot hold ends the conversion.
    Truncation { "AsciiStopsAtAccent", kStringEncodingASCII, u"AB\u00e9C", 10, 10, 2, "AB" },
    Truncation { "LatinStopsAtEuro", kStringEncodingISOLatin1, u"A\u00e9\u20acB", 10, 10, 2, "A\xe9" },
    Truncation { "LatinDoesNotHideAQuestionMark", kStringEncodingISOLatin1, u"?\u90e8", 10, 10, 1, "?" },
    Truncation { "ShiftJisStopsAtEuro", kStringEncodingShiftJIS, u"\u90e8\u20acx", 10, 10, 1, "\x95\x94" },
    Truncation { "MacRomanStopsAtKana", kStringEncodingMacRoman, u"A\u3042B", 10, 10, 1, "A" },
    Truncation { "WindowsStopsAtMacron", kStringEncodingWindowsLatin1, u"\u00e9\u0100", 10, 10, 1, "\xe9" },
    // Limits on characters and bytes; a character is never split.
    Truncation { "CharacterLimit", kStringEncodingUTF8, u"abcdef", 4, 10, 4, "abcd" },
    Truncation { "ByteLimitKeepsWholeCharacters", kStringEncodingUTF8, u"\u00e9\u00e9", 10, 3, 1, "\xc3\xa9" },
    Truncation { "ByteLimitInShiftJis", kStringEncodingShiftJIS, u"A\u90e8", 10, 2, 1, "A" },
    Truncation { "ZeroBytes", kStringEncodingUTF8, u"abc", 10, 0, 0, "" },
    Truncation { "ZeroCharacters", kStringEncodingUTF8, u"abc", 0, 10, 0, "" },
    // Surrogate pairs: whole or not at all.
    Truncation { "PairFits", kStringEncodingUTF8, u"a\U0001F600b", 4, 10, 4, "a\xf0\x9f\x98\x80" "b" },
    Truncation { "PairCutByCharacterLimit", kStringEncodingUTF8, u"a\U0001F600b", 2, 10, 1, "a" },
    Truncation { "PairCutByByteLimit", kStringEncodingUTF8, u"a\U0001F600b", 10, 4, 1, "a" },
    Truncation { "LoneHighSurrogate", kStringEncodingUTF8, u"a\xd800" u"b", 10, 10, 1, "a" },
    Truncation { "LoneLowSurrogate", kStringEncodingUTF8, u"a\xdc00" u"b", 10, 10, 1, "a" },
    Truncation { "PairNotInLatin1", kStringEncodingISOLatin1, u"a\U0001F600", 10, 10, 1, "a" },
    Truncation { "UnknownEncoding", StringEncoding(99), u"abc", 10, 10, 0, "" }),
    [](const ::testing::TestParamInfo<Truncation> &info) { return std::string(info.param.name); });

TEST(StringEncoding, InvalidBytesGiveNothing)
{
    const struct { StringEncoding encoding; QByteArray bytes; } cases[] = {
        { kStringEncodingASCII, "ab\x80" },
        { kStringEncodingUTF8, "A\xc3" },
        { kStringEncodingUTF8, "\xff" },
        { kStringEncodingUTF8, "\xed\xa0\x80" }, // an encoded surrogate
        { kStringEncodingShiftJIS, "A\x81" },
        { kStringEncodingShiftJIS, "\x82\xa0\x81" },
        { StringEncoding(0), "abc" },
        { StringEncoding(99), "abc" },
    };
    for (const auto &c : cases)
        EXPECT_FALSE(stringFromBytes(c.bytes, c.encoding)) << c.encoding << " " << c.bytes.toHex().toStdString();
    // Every byte is a character in Latin 1.
    EXPECT_EQ(stringFromBytes("\x80\xff", kStringEncodingISOLatin1).value_or(QString()).size(), 2);
}

TEST(StringEncoding, CodesetNamesGiveNumbers)
{
    const struct { const char *codeset; StringEncoding encoding; } cases[] = {
        { "UTF-8", kStringEncodingUTF8 },       { "utf8", kStringEncodingUTF8 },
        { "ANSI_X3.4-1968", kStringEncodingASCII }, { "ISO-8859-1", kStringEncodingISOLatin1 },
        { "ISO8859-1", kStringEncodingISOLatin1 },  { "SJIS", kStringEncodingShiftJIS },
        { "Shift_JIS", kStringEncodingShiftJIS },   { "CP1252", kStringEncodingWindowsLatin1 },
        { "macintosh", kStringEncodingMacRoman },   { "KOI8-R", kStringEncodingMacRoman },
        { "", kStringEncodingMacRoman },
    };
    for (const auto &c : cases)
        EXPECT_EQ(stringEncodingForCodeset(c.codeset), c.encoding) << c.codeset;
    // Every number has a converter of its own.
    for (StringEncoding number : { kStringEncodingASCII, kStringEncodingUTF8, kStringEncodingISOLatin1,
                                   kStringEncodingShiftJIS, kStringEncodingWindowsLatin1, kStringEncodingMacRoman })
        EXPECT_EQ(stringEncodingForCodeset(stringEncodingName(number)), number) << number;
}

TEST(StringEncoding, SystemEncodingFollowsTheLocale)
{
    const std::string saved = std::setlocale(LC_CTYPE, nullptr);
    ASSERT_TRUE(std::setlocale(LC_CTYPE, "C"));
    EXPECT_EQ(systemStringEncoding(), kStringEncodingASCII);
    if (std::setlocale(LC_CTYPE, "C.UTF-8")) {
        EXPECT_EQ(systemStringEncoding(), kStringEncodingUTF8);
    }
    std::setlocale(LC_CTYPE, saved.c_str());
}

} // namespace
