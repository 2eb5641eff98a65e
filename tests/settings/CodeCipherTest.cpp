// The AES block walk: per-job key from a key string's tail, fixed key, and
// decryption, held against OpenSSL's ECB mode and published answers.

#include "settings/CodeCipher.h"

#include "tests/settings/CipherTestSupport.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <memory>
#include <random>
#include <sys/mman.h>
#include <unistd.h>

using namespace ciphertest;

namespace {

constexpr size_t kCodeBufferSize = 256;
constexpr size_t kOutputSize = 512;
constexpr unsigned char kJunk = 0xA5;

// The buffers as the panel keeps them: a zero-filled code area and an output
// that holds junk until the cipher clears it.
struct Buffers
{
    explicit Buffers(const QByteArray &code)
    {
        codeArea.fill(0);
        output.fill(kJunk);
        memcpy(codeArea.data(), code.constData(), size_t(code.size()));
    }
    unsigned char *code() { return codeArea.data(); }
    QByteArray outputBytes(size_t count) const
    {
        return QByteArray(reinterpret_cast<const char *>(output.data()), qsizetype(count));
    }
    bool outputZeroFrom(size_t start) const
    {
        for (size_t i = start; i < output.size(); ++i) {
            if (output[i] != 0)
                return false;
        }
        return true;
    }

    std::array<unsigned char, kCodeBufferSize> codeArea;
    std::array<unsigned char, kOutputSize> output;
};

const unsigned char *bytes(const QByteArray &text)
{
    return reinterpret_cast<const unsigned char *>(text.constData());
}

QByteArray randomBytes(std::mt19937 &random, int count)
{
    // No zero byte: codes and key strings are NUL-terminated.
    std::uniform_int_distribution<int> byte(1, 255);
    QByteArray result;
    for (int i = 0; i < count; ++i)
        result.append(char(byte(random)));
    return result;
}

QByteArray fixedKey()
{
    return QByteArray(reinterpret_cast<const char *>(my_aes_key), sizeof my_aes_key);
}

} // namespace

TEST(CodeCipher, PublishedAnswersUnderKeyStringTail)
{
    // FIPS-197 appendix B and the ECB examples of NIST SP 800-38A; the key
    // string carries a stamp-like head that must play no part.
    const QByteArray keyString = "Tue, 5 Mar 20" + fromHex("2b7e151628aed2a6abf7158809cf4f3c");
    struct Case
    {
        const char *plain;
        const char *cipher;
    } cases[] = {
        { "3243f6a8885a308d313198a2e0370734", "3925841d02dc09fbdc118597196a0b32" },
        { "6bc1bee22e409f96e93d7e117393172aae2d8a571e03ac9c9eb76fac45af8e51",
          "3ad77bb40d7a3660a89ecaf32466ef97f5d3d58503b9699de785895a96fdbaaf" },
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.plain);
        Buffers buffers(fromHex(c.plain));
        my_aes_encrypt2(buffers.code(), bytes(keyString), buffers.output.data(), kOutputSize);
        const QByteArray expected = fromHex(c.cipher);
        EXPECT_EQ(buffers.outputBytes(size_t(expected.size())).toHex(), expected.toHex());
        EXPECT_TRUE(buffers.outputZeroFrom(size_t(expected.size())));
    }
}

TEST(CodeCipher, EveryCodeLengthMatchesZeroFilledEcbAndItsBase64)
{
    std::mt19937 random(7150);
    for (int keyRound = 0; keyRound < 8; ++keyRound) {
        const QByteArray keyString = randomBytes(random, 15 + keyRound * 3) + randomBytes(random, 16);
        const QByteArray key = keyString.right(16);
        for (int length = 1; length <= 32; ++length) {
            SCOPED_TRACE(testing::Message() << "key round " << keyRound << ", length " << length);
            const QByteArray code = randomBytes(random, length);
            Buffers buffers(code);
            my_aes_encrypt2(buffers.code(), bytes(keyString), buffers.output.data(), kOutputSize);

            const QByteArray expected = referenceEncrypt(key, zeroFilledBlocks(code));
            const size_t cipherLength = size_t(length + 15) & ~size_t(15);
            ASSERT_EQ(size_t(expected.size()), cipherLength);
            EXPECT_EQ(buffers.outputBytes(cipherLength), expected);
            EXPECT_TRUE(buffers.outputZeroFrom(cipherLength)) << "nothing is written past the blocks";

            char text[700];
            const int32_t written = Base64encode(text, reinterpret_cast<const char *>(buffers.output.data()),
                                                 int32_t(cipherLength));
            EXPECT_EQ(QByteArray(text), referenceBase64(expected));
            EXPECT_EQ(strlen(text), length <= 16 ? 24u : 44u);
            EXPECT_EQ(written, int32_t(strlen(text)) + 1);
        }
    }
}

TEST(CodeCipher, BlocksAreIndependentAndOnlyTheKeyTailCounts)
{
    const QByteArray code16 = "ABCDEFGHIJKLMNOP";
    const QByteArray code17 = code16 + "Q";
    const QByteArray code18 = code16 + "RS";
    const QByteArray stamp = "Tue, 5 Mar 2024 09:07:03 +0900";
    const QByteArray sameTail = "Sun, 9 Jun 1974 09:07:03 +0900";
    const QByteArray otherTail = "Tue, 5 Mar 2024 09:07:03 +0901";

    auto encrypt = [](const QByteArray &code, const QByteArray &keyString) {
        Buffers buffers(code);
        my_aes_encrypt2(buffers.code(), bytes(keyString), buffers.output.data(), kOutputSize);
        return buffers.outputBytes(32);
    };

    const QByteArray cipher16 = encrypt(code16, stamp);
    const QByteArray cipher17 = encrypt(code17, stamp);
    const QByteArray cipher18 = encrypt(code18, stamp);
    EXPECT_EQ(cipher16.right(16), QByteArray(16, '\0')) << "16 characters make one block";
    EXPECT_NE(cipher17.right(16), QByteArray(16, '\0')) << "the 17th character makes a second block";
    EXPECT_EQ(cipher17.left(16), cipher16.left(16));
    EXPECT_EQ(cipher18.left(16), cipher16.left(16));
    EXPECT_NE(cipher18.right(16), cipher17.right(16));

    EXPECT_EQ(encrypt(code17, stamp), cipher17) << "no initialisation vector, no state";
    EXPECT_EQ(encrypt(code17, sameTail), cipher17);
    EXPECT_NE(encrypt(code17, otherTail), cipher17);
}

TEST(CodeCipher, PartialBlockTakesWhatFollowsTheText)
{
    // The cipher adds no fill of its own: a caller whose buffer is not
    // zero-filled gets those bytes encrypted.
    const QByteArray keyString = "Tue, 5 Mar 2024 09:07:03 +0900";
    const QByteArray block = QByteArray("XYZ") + '\0' + QByteArray("junk after text");
    ASSERT_EQ(block.size(), 19);
    Buffers buffers(block);
    my_aes_encrypt2(buffers.code(), bytes(keyString), buffers.output.data(), kOutputSize);
    EXPECT_EQ(buffers.outputBytes(16), referenceEncrypt(keyString.right(16), block.left(16)));
    EXPECT_TRUE(buffers.outputZeroFrom(16));
}

TEST(CodeCipher, NothingToEncryptWritesOnlyTheClearing)
{
    const QByteArray keyString = "Tue, 5 Mar 2024 09:07:03 +0900";
    const unsigned char empty[16] = {};
    std::array<unsigned char, 64> output;

    // An empty text clears the output and never reads the key: the tail of a
    // short key string lies before its start (on the heap, where the address
    // sanitizer sees it).
    auto shortKey = std::make_unique<unsigned char[]>(6);
    memcpy(shortKey.get(), "short", 6);
    output.fill(kJunk);
    my_aes_encrypt2(empty, shortKey.get(), output.data(), output.size());
    EXPECT_EQ(output, (std::array<unsigned char, 64>{}));

    // The size bounds the clearing only.
    output.fill(kJunk);
    my_aes_encrypt2(empty, bytes(keyString), output.data(), 10);
    EXPECT_EQ(output[9], 0);
    EXPECT_EQ(output[10], kJunk);

    // Missing pointers: nothing at all is written.
    Buffers buffers("1234");
    my_aes_encrypt2(nullptr, bytes(keyString), buffers.output.data(), kOutputSize);
    my_aes_encrypt2(buffers.code(), nullptr, buffers.output.data(), kOutputSize);
    my_aes_encrypt(nullptr, buffers.output.data(), kOutputSize);
    my_aes_decrypt(nullptr, 16, buffers.output.data());
    EXPECT_EQ(buffers.output[0], kJunk);
    EXPECT_EQ(buffers.output[kOutputSize - 1], kJunk);
}

TEST(CodeCipher, FixedKeyEncryptsAndDecryptsEveryLength)
{
    EXPECT_EQ(fixedKey().toHex(), QByteArray("5c3e91d0a7246bf8e2170c4d98b35a61"));

    std::mt19937 random(1974);
    for (int length = 1; length <= 32; ++length) {
        SCOPED_TRACE(testing::Message() << "length " << length);
        const QByteArray code = randomBytes(random, length);
        Buffers buffers(code);
        my_aes_encrypt(buffers.code(), buffers.output.data(), kOutputSize);
        const size_t cipherLength = size_t(length + 15) & ~size_t(15);
        const QByteArray expected = referenceEncrypt(fixedKey(), zeroFilledBlocks(code));
        EXPECT_EQ(buffers.outputBytes(cipherLength), expected);
        EXPECT_EQ(QByteArray(reinterpret_cast<const char *>(buffers.code())), code) << "the text stays as it was";

        // Decryption writes a zero one byte past the cipher text it is given.
        std::array<unsigned char, 48> cipher;
        cipher.fill(kJunk);
        memcpy(cipher.data(), expected.constData(), cipherLength);
        std::array<unsigned char, 48> plain;
        plain.fill(kJunk);
        my_aes_decrypt(cipher.data(), cipherLength, plain.data());
        EXPECT_EQ(QByteArray(reinterpret_cast<const char *>(plain.data()), qsizetype(cipherLength)),
                  zeroFilledBlocks(code));
        EXPECT_EQ(cipher[cipherLength], 0);
        EXPECT_EQ(plain[cipherLength], kJunk) << "the output is not terminated";
    }
}

TEST(CodeCipher, DecryptionEdges)
{
    const QByteArray cipher = referenceEncrypt(fixedKey(), zeroFilledBlocks("1234"));

    // Length 0: a zero in the first output byte and in the first input byte.
    std::array<unsigned char, 32> input;
    input.fill(kJunk);
    std::array<unsigned char, 32> output;
    output.fill(kJunk);
    my_aes_decrypt(input.data(), 0, output.data());
    EXPECT_EQ(output[0], 0);
    EXPECT_EQ(output[1], kJunk);
    EXPECT_EQ(input[0], 0);
    EXPECT_EQ(input[1], kJunk);

    // A partial length still decrypts the whole block it starts.
    input.fill(kJunk);
    memcpy(input.data(), cipher.constData(), 16);
    output.fill(kJunk);
    my_aes_decrypt(input.data(), 5, output.data());
    EXPECT_EQ(QByteArray(reinterpret_cast<const char *>(output.data())), QByteArray("1234"));
    EXPECT_EQ(output[15], 0);
    EXPECT_EQ(output[16], kJunk);
    EXPECT_EQ(input[5], 0);
}

TEST(CodeCipherDeathTest, FixedKeyEncryptionWritesOverTheTerminator)
{
    // The text does not change, but it must lie in writable memory.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const size_t page = size_t(sysconf(_SC_PAGESIZE));
    void *memory = mmap(nullptr, page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(memory, MAP_FAILED);
    auto *text = static_cast<unsigned char *>(memory);
    memcpy(text, "1234", 5);
    ASSERT_EQ(mprotect(memory, page, PROT_READ), 0);

    std::array<unsigned char, 32> output;
    EXPECT_DEATH(my_aes_encrypt(text, output.data(), output.size()), "");
    munmap(memory, page);
}
