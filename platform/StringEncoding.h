#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QtGlobal>

#include <optional>

namespace pde {

// The platform's string-encoding numbers.
using StringEncoding = quint64;
inline constexpr StringEncoding kStringEncodingASCII = 1;
inline constexpr StringEncoding kStringEncodingUTF8 = 4;
inline constexpr StringEncoding kStringEncodingISOLatin1 = 5;
inline constexpr StringEncoding kStringEncodingShiftJIS = 8;
inline constexpr StringEncoding kStringEncodingWindowsLatin1 = 12;
inline constexpr StringEncoding kStringEncodingMacRoman = 30;

// The encoding of the C library's current locale (LC_CTYPE codeset); Mac OS
// Roman for a codeset that has no number here.
StringEncoding systemStringEncoding();
// The encoding number of a codeset name ("UTF-8", "ANSI_X3.4-1968", ...).
StringEncoding stringEncodingForCodeset(QByteArrayView codeset);
// The converter name of an encoding number; empty for an unknown number.
QByteArray stringEncodingName(StringEncoding encoding);

// The text of `bytes` in `encoding`; nothing when an unknown encoding or any
// byte sequence that is not valid in it.
std::optional<QString> stringFromBytes(QByteArrayView bytes, StringEncoding encoding);

struct EncodedBytes
{
    qsizetype characters = 0; // UTF-16 units converted
    qsizetype bytes = 0;      // bytes written
};

// Converts the first `maxCharacters` UTF-16 units of `text` into `buffer`,
// writing at most `maxBytes` bytes. Stops before the first character the
// encoding cannot hold or that would not fit whole; writes no terminator.
EncodedBytes bytesFromString(const QString &text, qsizetype maxCharacters, StringEncoding encoding,
                             char *buffer, qsizetype maxBytes);

} // namespace pde
