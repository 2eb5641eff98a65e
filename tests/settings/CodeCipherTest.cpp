// The code cipher and its Base64 text, held against OpenSSL and Qt's Base64.

#include "settings/CodeCipher.h"

#include "tests/support/OpenSslReference.h"

#include <QByteArray>

#include <gtest/gtest.h>

#include <random>

namespace {

const QByteArray kJunk(64, '\xA5');
const QByteArray kFixedKey = QByteArray::fromHex("5c3e91d0a7246bf8e2170c4d98b35a61");

unsigned char *u(QByteArray &data) { return reinterpret_cast<unsigned char *>(data.data()); }

// No zero byte: codes and key strings end at the first one.
QByteArray randomText(std::mt19937 &random, int count)
{
    QByteArray result;
    while (result.size() < count)
        result.append(char(std::uniform_int_distribution<int>(1, 255)(random)));
    return result;
}

} // namespace

TEST(CodeCipher, EveryCodeLengthMatchesZeroFilledEcbUnderEitherKey)
{
    std::mt19937 random(7150);
    // A head before the 16 bytes that make the key, as a stamp has.
    QByteArray keyString = randomText(random, 22) + randomText(random, 16);
    for (int length = 1; length <= 32; ++length) {
        SCOPED_TRACE(length);
        const QByteArray code = randomText(random, length);
        const QByteArray expected = pdetest::aes128Ecb(keyString.right(16), code);
        // As the panel calls it: the code in a zero-filled area, an output full of junk.
        QByteArray area = code.leftJustified(64, '\0'), output = kJunk;
        my_aes_encrypt2(u(area), u(keyString), u(output), 64);
        EXPECT_EQ(output, expected.leftJustified(64, '\0'));

        const QByteArray fixed = pdetest::aes128Ecb(kFixedKey, code);
        QByteArray cipher = kJunk, plain = kJunk;
        my_aes_encrypt(u(area), u(cipher), 48);
        EXPECT_EQ(cipher, fixed.leftJustified(48, '\0') + kJunk.left(16));
        // A partial length decrypts the whole block it starts.
        my_aes_decrypt(u(cipher), size_t(length), u(plain));
        EXPECT_EQ(plain.left(fixed.size() + 1), code.leftJustified(fixed.size(), '\0') + '\xA5');
    }
}

TEST(CodeCipher, AnEmptyCodeClearsTheGivenSizeOnly)
{
    QByteArray empty(16, '\0'), key = "Tue, 5 Mar 2024 09:07:03 +0900", output = kJunk;
    my_aes_encrypt2(u(empty), u(key), u(output), 10);
    EXPECT_EQ(output, QByteArray(10, '\0') + kJunk.left(54));
}

TEST(Base64, EncodesAsQtDoesAndDecodesTheAlphabetPrefixOnly)
{
    for (const QByteArray data : { "", "f", "fo", "foo", "foob", "fooba", "foobar" }) {
        QByteArray text(16, '#');
        const int32_t written = Base64encode(text.data(), data.constData(), int32_t(data.size()));
        EXPECT_EQ(text.left(written + 1), data.toBase64() + '\0' + '#') << data.constData();
        EXPECT_EQ(Base64encode_len(int32_t(data.size())), written);
    }
    const struct { const char *text; int32_t needed; QByteArray bytes; } cases[] = {
        { "", 1, "" }, { "Zm9vYmFy", 7, "foobar" }, { "QQ==", 4, "A" }, { "QQ", 4, "A" }, { "Q", 4, "" },
        { "QUJDR", 7, "ABC" },         // a lone fifth character is dropped
        { "QUJDRA==junk", 7, "ABCD" }, // everything after the fill is ignored
        { "QUJD\nRA==", 4, "ABC" }, { "=QUJD", 1, "" }, { "\xc3\x84QUJD", 1, "" },
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(Base64decode_len(c.text), c.needed);
        QByteArray decoded(16, '#');
        const int32_t length = Base64decode(decoded.data(), c.text);
        EXPECT_EQ(decoded.left(length + 2), c.bytes + '\0' + '#');
    }
}
