// Base64 text of cipher bytes, and the lenient decoder of the reverse path.

#include "settings/CodeCipher.h"

#include "tests/settings/CipherTestSupport.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>

using namespace ciphertest;

namespace {

constexpr char kJunk = '#';

} // namespace

TEST(Base64, Rfc4648VectorsBothWays)
{
    struct Case
    {
        const char *data;
        const char *text;
    } cases[] = {
        { "", "" },         { "f", "Zg==" },         { "fo", "Zm8=" },       { "foo", "Zm9v" },
        { "foob", "Zm9vYg==" }, { "fooba", "Zm9vYmE=" }, { "foobar", "Zm9vYmFy" },
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.data);
        const auto length = int32_t(strlen(c.data));
        std::array<char, 16> text;
        text.fill(kJunk);
        const int32_t written = Base64encode(text.data(), c.data, length);
        EXPECT_STREQ(text.data(), c.text);
        EXPECT_EQ(written, int32_t(strlen(c.text)) + 1);
        EXPECT_EQ(Base64encode_len(length), written);
        EXPECT_EQ(text[size_t(written)], kJunk) << "nothing past the terminator";

        std::array<char, 16> decoded;
        decoded.fill(kJunk);
        EXPECT_EQ(Base64decode(decoded.data(), c.text), length);
        EXPECT_STREQ(decoded.data(), c.data);
        EXPECT_GE(Base64decode_len(c.text), length + 1);
    }
}

TEST(Base64, EncodedLengths)
{
    // A length of none or less gives just the terminator.
    const struct
    {
        int32_t length;
        int32_t written;
    } cases[] = { { -1, 1 }, { 0, 1 }, { 1, 5 }, { 2, 5 }, { 3, 5 }, { 16, 25 }, { 32, 45 } };
    const QByteArray data(64, 'x');
    for (const auto &c : cases) {
        SCOPED_TRACE(c.length);
        std::array<char, 64> text;
        text.fill(kJunk);
        EXPECT_EQ(Base64encode(text.data(), data.constData(), c.length), c.written);
        EXPECT_EQ(strlen(text.data()), size_t(c.written) - 1);
        EXPECT_EQ(Base64encode_len(c.length), c.written);
    }
}

TEST(Base64, EveryByteValueRoundTrips)
{
    QByteArray all;
    for (int byte = 0; byte < 256; ++byte)
        all.append(char(byte));
    all.append("\xff\x00", 2);

    // 256, 257 and 258 bytes: one, two and no bytes left after whole groups.
    for (qsizetype size = 256; size <= 258; ++size) {
        SCOPED_TRACE(size);
        const QByteArray data = all.left(size);
        std::array<char, 1024> text;
        const int32_t written = Base64encode(text.data(), data.constData(), int32_t(size));
        EXPECT_EQ(QByteArray(text.data()), referenceBase64(data));
        EXPECT_EQ(written, Base64encode_len(int32_t(size)));

        std::array<char, 1024> decoded;
        ASSERT_LE(Base64decode_len(text.data()), int32_t(decoded.size()));
        EXPECT_EQ(Base64decode(decoded.data(), text.data()), int32_t(size));
        EXPECT_EQ(QByteArray(decoded.data(), size), data);
    }
}

TEST(Base64, DecodeTableMarksEverythingOutsideTheAlphabet)
{
    ASSERT_EQ(strlen(basis_64), 64u);
    for (int byte = 0; byte < 256; ++byte) {
        const char *inAlphabet = byte ? strchr(basis_64, byte) : nullptr;
        const int expected = inAlphabet ? int(inAlphabet - basis_64) : 64;
        EXPECT_EQ(pr2six[byte], expected) << "byte " << byte;
    }
}

TEST(Base64, DecoderTakesTheAlphabetPrefixOnly)
{
    struct Case
    {
        const char *text;
        int32_t decoded;
        int32_t needed;
        QByteArray bytes;
    } cases[] = {
        { "", 0, 1, "" },
        { "QQ==", 1, 4, "A" },
        { "QQ", 1, 4, "A" },
        { "QUI=", 2, 4, "AB" },
        { "QUJD", 3, 4, "ABC" },
        { "QUJDR", 3, 7, "ABC" },        // a lone fifth character is dropped
        { "QUJDRA==junk", 4, 7, "ABCD" }, // everything after the fill is ignored
        { "QUJD\nRA==", 3, 4, "ABC" },    // white space ends the text
        { "=QUJD", 0, 1, "" },
        { "-_QUJD", 0, 1, "" },
        { "\xc3\x84QUJD", 0, 1, "" },
        { "Q", 0, 4, "" },
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(Base64decode_len(c.text), c.needed);
        std::array<char, 16> decoded;
        decoded.fill(kJunk);
        const int32_t length = Base64decode(decoded.data(), c.text);
        EXPECT_EQ(length, c.decoded);
        EXPECT_EQ(QByteArray(decoded.data(), length), c.bytes);
        EXPECT_EQ(decoded[size_t(length)], '\0');
        EXPECT_EQ(decoded[size_t(length) + 1], kJunk);
    }
}
