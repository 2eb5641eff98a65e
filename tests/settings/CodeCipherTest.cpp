// The code cipher and its Base64 text, held against OpenSSL and Qt's Base64.

#include "settings/CodeCipher.h"

#include "tests/support/OpenSslReference.h"

#include <QByteArray>

#include <gtest/gtest.h>

#include <random>

namespace {

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

TEST(CodeCipher, EveryCodeLengthMatchesZeroFilledEcb)
{
    std::mt19937 random(7150);
    // A head before the 16 bytes that make the key, as a stamp has.
    QByteArray keyString = randomText(random, 22) + randomText(random, 16);
    for (int length = 1; length <= 32; ++length) {
        SCOPED_TRACE(length);
        const QByteArray code = randomText(random, length);
        const QByteArray expected = pdetest::aes128Ecb(keyString.right(16), code);
        // As the panel calls it: the code in a zero-filled area, an output full of junk.
        QByteArray area = code.leftJustified(64, '\0'), output(64, '\xA5');
        my_aes_encrypt2(u(area), u(keyString), u(output), 64);
        EXPECT_EQ(output, expected.leftJustified(64, '\0'));
    }
}

TEST(Base64, EncodesAsQtDoes)
{
    for (const QByteArray data : { "", "f", "fo", "foo", "foob", "fooba", "foobar" }) {
        QByteArray text(16, '#');
        const int32_t written = Base64encode(text.data(), data.constData(), int32_t(data.size()));
        EXPECT_EQ(text.left(written + 1), data.toBase64() + '\0' + '#') << data.constData();
        EXPECT_EQ(Base64encode_len(int32_t(data.size())), written);
    }
}
