#include "platform/StringEncoding.h"

#include <clocale>

#include <gtest/gtest.h>

namespace {

using namespace pde;

TEST(StringEncoding, ConvertsBothWaysUpToTheFirstCharacterItCannotHoldOrALimit)
{
    const struct { StringEncoding encoding; const char16_t *text; qsizetype maxCharacters, maxBytes, characters;
                   QByteArray bytes; } cases[] = {
        // Each number, whole.
        { kStringEncodingASCII, u"A1 b:~", 99, 64, 6, "A1 b:~" },
        { kStringEncodingUTF8, u"\u00dc\u20ac\u90e8", 99, 64, 3, "\xc3\x9c\xe2\x82\xac\xe9\x83\xa8" },
        { kStringEncodingISOLatin1, u"\u00dc\u00ff?", 99, 64, 3, "\xdc\xff?" },
        { kStringEncodingShiftJIS, u"\u90e8\u9580A\uff71\u8868", 99, 64, 5, "\x95\x94\x96\xe5" "A\xb1\x95\x5c" },
        { kStringEncodingWindowsLatin1, u"\u20ac\u00dc\u2122", 99, 64, 3, "\x80\xdc\x99" },
        { kStringEncodingMacRoman, u"\u00dc\u20ac\u03c0\u00e9", 99, 64, 4, "\x86\xdb\xb9\x8e" },
        // Up to the first character the encoding cannot hold.
        { kStringEncodingASCII, u"AB\u00e9C", 10, 10, 2, "AB" },
        { kStringEncodingISOLatin1, u"?\u90e8", 10, 10, 1, "?" }, // a real '?' is no replaced character
        { StringEncoding(99), u"abc", 10, 10, 0, "" },
        // Limits; a character is never split.
        { kStringEncodingUTF8, u"abcdef", 4, 10, 4, "abcd" },
        { kStringEncodingUTF8, u"\u00e9\u00e9", 10, 3, 1, "\xc3\xa9" },
        // Surrogate pairs go whole or not at all.
        { kStringEncodingUTF8, u"a\U0001F600b", 4, 10, 4, "a\xf0\x9f\x98\x80" "b" },
        { kStringEncodingUTF8, u"a\U0001F600b", 2, 10, 1, "a" },
        { kStringEncodingUTF8, u"a\U0001F600b", 10, 4, 1, "a" },
        { kStringEncodingUTF8, u"a\xd800" u"b", 10, 10, 1, "a" },
    };
    for (const auto &c : cases) {
        const QString text = QString::fromUtf16(c.text);
        SCOPED_TRACE(text.toStdString());
        QByteArray buffer(64, '\x7f');
        const EncodedBytes counts = bytesFromString(text, c.maxCharacters, c.encoding, buffer.data(), c.maxBytes);
        EXPECT_EQ(std::pair(counts.characters, counts.bytes), std::pair(c.characters, c.bytes.size()));
        EXPECT_EQ(buffer.toHex(), (c.bytes + QByteArray(64 - c.bytes.size(), '\x7f')).toHex()); // nothing past its bytes
        if (c.maxCharacters == 99) {
            EXPECT_EQ(stringFromBytes(c.bytes, c.encoding), std::optional<QString>(text));
            // The codeset name of each number leads back to it.
            EXPECT_EQ(stringEncodingForCodeset(stringEncodingName(c.encoding)), c.encoding);
        }
    }
}

TEST(StringEncoding, InvalidBytesGiveNothing)
{
    const struct { StringEncoding encoding; QByteArray bytes; } cases[] = {
        { kStringEncodingASCII, "ab\x80" }, { kStringEncodingUTF8, "A\xc3" },
        { kStringEncodingShiftJIS, "A\x81" }, { StringEncoding(99), "abc" },
    };
    for (const auto &c : cases)
        EXPECT_FALSE(stringFromBytes(c.bytes, c.encoding)) << c.encoding << " " << c.bytes.toHex().toStdString();
}

TEST(StringEncoding, CodesetOfTheLocaleGivesTheSystemEncoding)
{
    // A codeset without an encoding of its own.
    EXPECT_EQ(stringEncodingForCodeset("KOI8-R"), kStringEncodingMacRoman);
    // Each test runs in a process of its own: the codeset need not be put back.
    ASSERT_TRUE(std::setlocale(LC_CTYPE, "C"));
    EXPECT_EQ(systemStringEncoding(), kStringEncodingASCII);
}

} // namespace
