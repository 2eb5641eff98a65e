#include "tests/support/OpenSslReference.h"

#include <openssl/evp.h>

#include <memory>

namespace pdetest {

QByteArray aes128Ecb(const QByteArray &key, const QByteArray &data)
{
    if (key.size() != 16)
        return QByteArray();
    const QByteArray input = data.leftJustified((data.size() + 15) / 16 * 16, '\0');
    std::unique_ptr<EVP_CIPHER_CTX, void (*)(EVP_CIPHER_CTX *)> context(EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free);
    QByteArray output(input.size(), '\0');
    int written = 0;
    EVP_EncryptInit_ex(context.get(), EVP_aes_128_ecb(), nullptr, reinterpret_cast<const unsigned char *>(key.constData()), nullptr);
    EVP_CIPHER_CTX_set_padding(context.get(), 0);
    EVP_EncryptUpdate(context.get(), reinterpret_cast<unsigned char *>(output.data()), &written,
                      reinterpret_cast<const unsigned char *>(input.constData()), int(input.size()));
    return output.left(written);
}

} // namespace pdetest
