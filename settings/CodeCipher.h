#pragma once

// The code cipher: AES-128 over a code's 16-byte blocks (no chaining, no fill
// of its own) under the tail of a key string or under a fixed key, and Base64
// text of the result. Free functions on caller-owned buffers; none allocates,
// none keeps state, none reports an error.

#include <cstddef>
#include <cstdint>

// The fixed key of my_aes_encrypt and my_aes_decrypt.
extern const unsigned char my_aes_key[16];
// The Base64 alphabet and its decode table (64 marks a byte outside it).
extern const char basis_64[65];
extern const unsigned char pr2six[256];

// Clears outputSize bytes of output, then encrypts the NUL-terminated
// plaintext block by block under the last 16 bytes of keyString. A final
// partial block takes the bytes that follow the text in its buffer.
void my_aes_encrypt2(const unsigned char *plaintext, const unsigned char *keyString, unsigned char *output,
                     size_t outputSize);
// The same under the fixed key; writes a zero over the plaintext's terminator.
void my_aes_encrypt(unsigned char *plaintext, unsigned char *output, size_t outputSize);
// Decrypts `length` bytes (whole blocks, reading past a partial one) under
// the fixed key; writes a zero into cipherText[length].
void my_aes_decrypt(unsigned char *cipherText, size_t length, unsigned char *output);

// Characters needed for the Base64 text of `length` bytes, terminator included.
int32_t Base64encode_len(int32_t length);
// Writes the Base64 text of `length` bytes and a terminator; answers the
// characters written, terminator included.
int32_t Base64encode(char *encoded, const char *data, int32_t length);
// Bytes needed to decode the alphabet prefix of `encoded`, terminator included.
int32_t Base64decode_len(const char *encoded);
// Decodes the alphabet prefix of `encoded` and writes a terminator; answers
// the bytes decoded, terminator not included.
int32_t Base64decode(char *decoded, const char *encoded);
