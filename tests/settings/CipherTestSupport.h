#pragma once

// Reference results from OpenSSL's own ECB mode and Base64, to hold the
// cipher module's block walk and encoder against.

#include <QByteArray>

#include <openssl/evp.h>

namespace ciphertest {

inline QByteArray fromHex(const char *hex)
{
    return QByteArray::fromHex(hex);
}

// AES-128-ECB without padding; `plain` must be whole blocks.
inline QByteArray referenceEncrypt(const QByteArray &key, const QByteArray &plain)
{
    QByteArray cipher(plain.size() + 16, '\0');
    int written = 0;
    int last = 0;
    EVP_CIPHER_CTX *context = EVP_CIPHER_CTX_new();
    EVP_EncryptInit_ex(context, EVP_aes_128_ecb(), nullptr, reinterpret_cast<const unsigned char *>(key.constData()),
                       nullptr);
    EVP_CIPHER_CTX_set_padding(context, 0);
    EVP_EncryptUpdate(context, reinterpret_cast<unsigned char *>(cipher.data()), &written,
                      reinterpret_cast<const unsigned char *>(plain.constData()), int(plain.size()));
    EVP_EncryptFinal_ex(context, reinterpret_cast<unsigned char *>(cipher.data()) + written, &last);
    EVP_CIPHER_CTX_free(context);
    cipher.truncate(written + last);
    return cipher;
}

inline QByteArray referenceBase64(const QByteArray &data)
{
    QByteArray text(4 * ((data.size() + 2) / 3) + 1, '\0');
    const int length = EVP_EncodeBlock(reinterpret_cast<unsigned char *>(text.data()),
                                       reinterpret_cast<const unsigned char *>(data.constData()), int(data.size()));
    text.truncate(length);
    return text;
}

// The code followed by zero bytes up to a whole number of blocks.
inline QByteArray zeroFilledBlocks(const QByteArray &code)
{
    QByteArray blocks = code;
    blocks.append(QByteArray((16 - code.size() % 16) % 16, '\0'));
    return blocks;
}

} // namespace ciphertest
