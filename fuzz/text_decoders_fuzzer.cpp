// The ticket's decoders over any text: hex (myatoi) and Base64, then the
// fixed-key decryption of what Base64 gave.

#include "settings/CodeCipher.h"
#include "settings/TicketText.h"

#include <cstring>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    std::vector<char> text(size + 1, '\0');
    std::memcpy(text.data(), data, size);

    // myatoi writes half the length, rounded up, and a terminator.
    std::vector<unsigned char> bytes(size / 2 + 2, 0xAA);
    myatoi(text.data(), bytes.data(), uint32_t(size));

    const int32_t needed = Base64decode_len(text.data());
    // Decryption walks whole blocks, reading and writing past a partial one.
    std::vector<char> decoded(size_t(needed) + 32, '\0');
    const int32_t length = Base64decode(decoded.data(), text.data());
    if (length < 0 || length >= needed)
        __builtin_trap();

    std::vector<unsigned char> plain(size_t(length) + 32, 0);
    my_aes_decrypt(reinterpret_cast<unsigned char *>(decoded.data()), size_t(length), plain.data());
    return 0;
}
