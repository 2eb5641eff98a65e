#pragma once

// OpenSSL as the reference the ticket's cipher is held against.

#include <QByteArray>

namespace pdetest {

// AES-128-ECB under a 16-byte key of the data zero-filled to whole blocks.
QByteArray aes128Ecb(const QByteArray &key, const QByteArray &data);

} // namespace pdetest
