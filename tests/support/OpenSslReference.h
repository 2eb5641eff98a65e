#pragma once

// OpenSSL as the reference the ticket's cipher is held against.

#include <QByteArray>

namespace pdetest {

// AES-128-ECB without padding under a 16-byte key. Encryption zero-fills the
// data to whole blocks first; decryption of anything but whole blocks gives
// an empty result.
QByteArray aes128Ecb(const QByteArray &key, const QByteArray &data, bool encrypt);

} // namespace pdetest
