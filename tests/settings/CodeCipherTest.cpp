// The code cipher and its Base64 text, held against OpenSSL and published answers.

#include "settings/CodeCipher.h"

#include <QByteArray>

#include <gtest/gtest.h>
#include <openssl/evp.h>

#include <cstring>
#include <memory>
#include <random>
#include <sys/mman.h>
#include <unistd.h>

namespace {

const QByteArray kJunk(64, '\xA5');

unsigned char *u(QByteArray &data) { return reinterpret_cast<unsigned char *>(data.data()); }
const unsigned char *u(const QByteArray &data) { return reinterpret_cast<const unsigned char *>(data.constData()); }

// AES-128-ECB without padding over the code zero-filled to whole blocks.
QByteArray referenceEncrypt(const QByteArray &key, const QByteArray &code)
{
    const QByteArray plain = code.leftJustified((code.size() + 15) / 16 * 16, '\0');
    QByteArray cipher(plain.size(), '\0');
    int written = 0;
    EVP_CIPHER_CTX *context = EVP_CIPHER_CTX_new();
    EVP_EncryptInit_ex(context, EVP_aes_128_ecb(), nullptr, u(key), nullptr);
    EVP_CIPHER_CTX_set_padding(context, 0);
    EVP_EncryptUpdate(context, u(cipher), &written, u(plain), int(plain.size()));
    EVP_CIPHER_CTX_free(context);
    return cipher.left(written);
}

QByteArray referenceBase64(const QByteArray &data)
{
    QByteArray text(4 * ((data.size() + 2) / 3) + 1, '\0');
    text.truncate(EVP_EncodeBlock(u(text), u(data), int(data.size())));
    return text;
}

// As the panel calls it: the code in a zero-filled buffer, an output full of junk.
QByteArray encrypt2(const QByteArray &code, const QByteArray &keyString)
{
    QByteArray area = code.leftJustified(64, '\0'), output = kJunk;
    my_aes_encrypt2(u(area), u(keyString), u(output), size_t(output.size()));
    return output;
}

// No zero byte: codes and key strings are NUL-terminated.
QByteArray randomBytes(std::mt19937 &random, int count)
{
    QByteArray result;
    while (result.size() < count)
        result.append(char(std::uniform_int_distribution<int>(1, 255)(random)));
    return result;
}

} // namespace

TEST(CodeCipher, KnownAnswerUnderTheKeyStringsTail)
{
    const QByteArray keyString = "Tue, 5 Mar 20" + QByteArray::fromHex("2b7e151628aed2a6abf7158809cf4f3c");
    const QByteArray expected = QByteArray::fromHex("3925841d02dc09fbdc118597196a0b32").leftJustified(64, '\0');
    EXPECT_EQ(encrypt2(QByteArray::fromHex("3243f6a8885a308d313198a2e0370734"), keyString).toHex(), expected.toHex());
}

TEST(CodeCipher, EveryCodeLengthMatchesZeroFilledEcbAndItsBase64)
{
    std::mt19937 random(7150);
    for (int keyRound = 0; keyRound < 3; ++keyRound) {
        // Heads of different lengths before the 16 bytes that make the key.
        const QByteArray keyString = randomBytes(random, 15 + keyRound * 7) + randomBytes(random, 16);
        for (int length = 1; length <= 32; ++length) {
            SCOPED_TRACE(testing::Message() << "key round " << keyRound << ", length " << length);
            const QByteArray code = randomBytes(random, length);
            const QByteArray expected = referenceEncrypt(keyString.right(16), code);
            const QByteArray output = encrypt2(code, keyString);
            EXPECT_EQ(output, expected.leftJustified(64, '\0')) << "nothing is written past the blocks";

            char text[64], decoded[40];
            const int32_t written = Base64encode(text, output.constData(), int32_t(expected.size()));
            EXPECT_EQ(QByteArray(text), referenceBase64(expected));
            EXPECT_EQ(written, length <= 16 ? 25 : 45);
            EXPECT_EQ(QByteArray(decoded, Base64decode(decoded, text)), expected);
        }
    }
}

TEST(CodeCipher, FixedKeyEncryptsAndDecryptsEveryLength)
{
    const QByteArray fixedKey = QByteArray::fromHex("5c3e91d0a7246bf8e2170c4d98b35a61");
    std::mt19937 random(1974);
    for (int length = 1; length <= 32; ++length) {
        SCOPED_TRACE(testing::Message() << "length " << length);
        const QByteArray code = randomBytes(random, length);
        const QByteArray expected = referenceEncrypt(fixedKey, code);
        QByteArray text = code.leftJustified(48, '\0'), cipher = kJunk.left(48), plain = kJunk.left(48);
        my_aes_encrypt(u(text), u(cipher), 48);
        EXPECT_EQ(cipher, expected.leftJustified(48, '\0'));
        EXPECT_EQ(text, code.leftJustified(48, '\0')) << "the text stays as it was";

        // A partial length decrypts the whole block it starts; the zero goes
        // into the input, one byte past the given length.
        my_aes_decrypt(u(cipher), size_t(length), u(plain));
        EXPECT_EQ(plain.left(expected.size() + 1), code.leftJustified(expected.size(), '\0') + '\xA5');
        EXPECT_EQ(cipher[length], '\0');
    }
}

TEST(CodeCipher, EdgesWriteExactlyTheirBytes)
{
    const QByteArray keyString = "Tue, 5 Mar 2024 09:07:03 +0900";
    QByteArray empty(16, '\0'), output = kJunk;

    // An empty text clears the output and never reads the key, whose tail
    // here would lie before its start (on the heap, for the address sanitizer).
    auto shortKey = std::make_unique<unsigned char[]>(6);
    memcpy(shortKey.get(), "short", 6);
    my_aes_encrypt2(u(empty), shortKey.get(), u(output), 64);
    EXPECT_EQ(output, QByteArray(64, '\0'));

    output = kJunk;
    my_aes_encrypt2(u(empty), u(keyString), u(output), 10);
    EXPECT_EQ(output, QByteArray(10, '\0') + kJunk.left(54)) << "the size bounds the clearing";

    output = kJunk;
    my_aes_encrypt2(nullptr, u(keyString), u(output), 64);
    my_aes_encrypt2(u(empty), nullptr, u(output), 64);
    my_aes_encrypt(nullptr, u(output), 64);
    my_aes_decrypt(nullptr, 16, u(output));
    EXPECT_EQ(output, kJunk) << "missing pointers write nothing";

    QByteArray input = kJunk;
    my_aes_decrypt(u(input), 0, u(output));
    EXPECT_EQ(output.left(2) + input.left(2), QByteArray("\0\xA5\0\xA5", 4)) << "nothing decrypts to an empty text";
}

TEST(CodeCipherDeathTest, FixedKeyEncryptionWritesOverTheTerminator)
{
    // The text does not change, but it must lie in writable memory.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const size_t page = size_t(sysconf(_SC_PAGESIZE));
    void *memory = mmap(nullptr, page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(memory, MAP_FAILED);
    memcpy(memory, "1234", 5);
    ASSERT_EQ(mprotect(memory, page, PROT_READ), 0);
    QByteArray output(32, '\0');
    EXPECT_DEATH(my_aes_encrypt(static_cast<unsigned char *>(memory), u(output), 32), "");
    munmap(memory, page);
}

TEST(Base64, Rfc4648VectorsBothWays)
{
    const struct { const char *data, *text; } vectors[] = {
        { "", "" }, { "f", "Zg==" }, { "fo", "Zm8=" }, { "foo", "Zm9v" },
        { "foob", "Zm9vYg==" }, { "fooba", "Zm9vYmE=" }, { "foobar", "Zm9vYmFy" },
    };
    for (const auto &c : vectors) {
        SCOPED_TRACE(c.data);
        const auto length = int32_t(strlen(c.data));
        QByteArray text(16, '#');
        const int32_t written = Base64encode(text.data(), c.data, length);
        EXPECT_EQ(text.left(written + 1), c.text + QByteArray(1, '\0') + '#') << "nothing past the terminator";
        EXPECT_EQ(Base64encode_len(length), written);

        char decoded[16];
        EXPECT_EQ(Base64decode(decoded, c.text), length);
        EXPECT_STREQ(decoded, c.data);
        EXPECT_GE(Base64decode_len(c.text), length + 1);
    }
    char text[4];
    EXPECT_EQ(Base64encode(text, "x", -1), 1) << "a negative length gives just the terminator";
    EXPECT_STREQ(text, "");
}

TEST(Base64, DecoderTakesTheAlphabetPrefixOnly)
{
    const struct { const char *text; int32_t needed; QByteArray bytes; } cases[] = {
        { "", 1, "" }, { "QQ==", 4, "A" }, { "QQ", 4, "A" }, { "Q", 4, "" },
        { "QUJDR", 7, "ABC" },         // a lone fifth character is dropped
        { "QUJDRA==junk", 7, "ABCD" }, // everything after the fill is ignored
        { "QUJD\nRA==", 4, "ABC" },    // white space ends the text
        { "=QUJD", 1, "" }, { "\xc3\x84QUJD", 1, "" },
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(Base64decode_len(c.text), c.needed);
        QByteArray decoded(16, '#');
        const int32_t length = Base64decode(decoded.data(), c.text);
        EXPECT_EQ(decoded.left(length + 2), c.bytes + '\0' + '#');
    }
}
