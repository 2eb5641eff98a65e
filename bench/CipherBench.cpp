// The code cipher as the panel calls it (block walk + Base64 into fixed
// buffers), beside OpenSSL's EVP ECB and EVP_EncodeBlock on the same inputs,
// and the pieces that make up the panel's call.

#include "settings/CodeCipher.h"

#include <benchmark/benchmark.h>

#include <openssl/aes.h>
#include <openssl/evp.h>

#include <array>
#include <cstring>

namespace {

// A spool stamp with a two-digit day: 31 characters, the longest key string.
constexpr char kStamp[] = "Tue, 15 Mar 2024 09:07:03 +0900";
static_assert(sizeof kStamp == 32);

constexpr char kCode[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZ012345";

const unsigned char *stampBytes()
{
    return reinterpret_cast<const unsigned char *>(kStamp);
}

// The panel's buffers: a zero-filled code area, the cipher output, the text.
struct PanelBuffers
{
    explicit PanelBuffers(int codeLength)
    {
        memcpy(code.data(), kCode, size_t(codeLength));
    }
    std::array<unsigned char, 256> code{};
    std::array<unsigned char, 512> cipher{};
    std::array<char, 685> text{};
};

int cipherLength(int codeLength)
{
    return (codeLength + 15) & ~15;
}

void panelCipher(benchmark::State &state)
{
    const int codeLength = int(state.range(0));
    PanelBuffers buffers(codeLength);
    for (auto _ : state) {
        my_aes_encrypt2(buffers.code.data(), stampBytes(), buffers.cipher.data(), buffers.cipher.size());
        Base64encode(buffers.text.data(), reinterpret_cast<const char *>(buffers.cipher.data()),
                     cipherLength(int(strlen(reinterpret_cast<const char *>(buffers.code.data())))));
        benchmark::DoNotOptimize(buffers.text.data());
        benchmark::ClobberMemory();
    }
}

// One-shot EVP: a context for each code, as a caller without state would use it.
void evpCipher(benchmark::State &state)
{
    const int codeLength = int(state.range(0));
    PanelBuffers buffers(codeLength);
    const unsigned char *key = stampBytes() + strlen(kStamp) - 16;
    for (auto _ : state) {
        EVP_CIPHER_CTX *context = EVP_CIPHER_CTX_new();
        EVP_EncryptInit_ex(context, EVP_aes_128_ecb(), nullptr, key, nullptr);
        EVP_CIPHER_CTX_set_padding(context, 0);
        int written = 0;
        EVP_EncryptUpdate(context, buffers.cipher.data(), &written, buffers.code.data(), cipherLength(codeLength));
        EVP_CIPHER_CTX_free(context);
        EVP_EncodeBlock(reinterpret_cast<unsigned char *>(buffers.text.data()), buffers.cipher.data(), written);
        benchmark::DoNotOptimize(buffers.text.data());
        benchmark::ClobberMemory();
    }
}

// EVP with one context kept across codes; the key is still set for each.
void evpCipherReusedContext(benchmark::State &state)
{
    const int codeLength = int(state.range(0));
    PanelBuffers buffers(codeLength);
    const unsigned char *key = stampBytes() + strlen(kStamp) - 16;
    EVP_CIPHER_CTX *context = EVP_CIPHER_CTX_new();
    for (auto _ : state) {
        EVP_EncryptInit_ex(context, EVP_aes_128_ecb(), nullptr, key, nullptr);
        EVP_CIPHER_CTX_set_padding(context, 0);
        int written = 0;
        EVP_EncryptUpdate(context, buffers.cipher.data(), &written, buffers.code.data(), cipherLength(codeLength));
        EVP_EncodeBlock(reinterpret_cast<unsigned char *>(buffers.text.data()), buffers.cipher.data(), written);
        benchmark::DoNotOptimize(buffers.text.data());
        benchmark::ClobberMemory();
    }
    EVP_CIPHER_CTX_free(context);
}

// The pieces of the panel's call.
void keySchedule(benchmark::State &state)
{
    AES_KEY schedule;
    for (auto _ : state) {
        AES_set_encrypt_key(stampBytes() + strlen(kStamp) - 16, 128, &schedule);
        benchmark::DoNotOptimize(&schedule);
    }
}

void oneBlock(benchmark::State &state)
{
    AES_KEY schedule;
    AES_set_encrypt_key(stampBytes() + strlen(kStamp) - 16, 128, &schedule);
    std::array<unsigned char, 16> block{};
    for (auto _ : state) {
        AES_encrypt(block.data(), block.data(), &schedule);
        benchmark::DoNotOptimize(block.data());
    }
}

void clearOutput(benchmark::State &state)
{
    std::array<unsigned char, 512> output;
    for (auto _ : state) {
        memset(output.data(), 0, output.size());
        benchmark::DoNotOptimize(output.data());
        benchmark::ClobberMemory();
    }
}

void base64Only(benchmark::State &state)
{
    const int length = int(state.range(0));
    std::array<char, 64> data{};
    std::array<char, 685> text{};
    for (auto _ : state) {
        Base64encode(text.data(), data.data(), length);
        benchmark::DoNotOptimize(text.data());
        benchmark::ClobberMemory();
    }
}

} // namespace

BENCHMARK(panelCipher)->Name("panel/encrypt2+Base64encode")->Arg(4)->Arg(16)->Arg(32);
BENCHMARK(evpCipher)->Name("openssl/EVP_ecb+EncodeBlock")->Arg(4)->Arg(16)->Arg(32);
BENCHMARK(evpCipherReusedContext)->Name("openssl/EVP_ecb+EncodeBlock,context_kept")->Arg(4)->Arg(16)->Arg(32);
BENCHMARK(keySchedule)->Name("part/AES_set_encrypt_key");
BENCHMARK(oneBlock)->Name("part/AES_encrypt_one_block");
BENCHMARK(clearOutput)->Name("part/clear_512_bytes");
BENCHMARK(base64Only)->Name("part/Base64encode")->Arg(16)->Arg(32);

BENCHMARK_MAIN();
