#include "platform/StringEncoding.h"

#include <QStringDecoder>
#include <QStringEncoder>

#include <clocale>
#include <cstring>
#include <langinfo.h>

namespace pde {

namespace {

struct EncodingName
{
    StringEncoding number;
    const char *name;
};

constexpr EncodingName kEncodings[] = {
    { kStringEncodingASCII, "US-ASCII" },
    { kStringEncodingUTF8, "UTF-8" },
    { kStringEncodingISOLatin1, "ISO-8859-1" },
    { kStringEncodingShiftJIS, "Shift_JIS" },
    { kStringEncodingWindowsLatin1, "windows-1252" },
    { kStringEncodingMacRoman, "macintosh" },
};

// Codeset names as the C library spells them, and their encodings.
constexpr EncodingName kCodesets[] = {
    { kStringEncodingUTF8, "UTF-8" },
    { kStringEncodingUTF8, "UTF8" },
    { kStringEncodingASCII, "ANSI_X3.4-1968" },
    { kStringEncodingASCII, "ASCII" },
    { kStringEncodingASCII, "US-ASCII" },
    { kStringEncodingISOLatin1, "ISO-8859-1" },
    { kStringEncodingISOLatin1, "ISO8859-1" },
    { kStringEncodingShiftJIS, "SHIFT_JIS" },
    { kStringEncodingShiftJIS, "SJIS" },
    { kStringEncodingWindowsLatin1, "CP1252" },
    { kStringEncodingWindowsLatin1, "WINDOWS-1252" },
    { kStringEncodingMacRoman, "MACINTOSH" },
};

bool isAsciiSubset(StringEncoding encoding)
{
    return encoding == kStringEncodingASCII;
}

} // namespace

StringEncoding stringEncodingForCodeset(QByteArrayView codeset)
{
    for (const EncodingName &entry : kCodesets) {
        if (codeset.compare(QByteArrayView(entry.name), Qt::CaseInsensitive) == 0)
            return entry.number;
    }
    return kStringEncodingMacRoman;
}

StringEncoding systemStringEncoding()
{
    const char *codeset = nl_langinfo(CODESET);
    return stringEncodingForCodeset(codeset ? QByteArrayView(codeset) : QByteArrayView());
}

QByteArray stringEncodingName(StringEncoding encoding)
{
    for (const EncodingName &entry : kEncodings) {
        if (entry.number == encoding)
            return QByteArray(entry.name);
    }
    return QByteArray();
}

std::optional<QString> stringFromBytes(QByteArrayView bytes, StringEncoding encoding)
{
    if (isAsciiSubset(encoding)) {
        for (char c : bytes) {
            if (static_cast<unsigned char>(c) > 0x7f)
                return std::nullopt;
        }
        return QString::fromLatin1(bytes);
    }
    const QByteArray name = stringEncodingName(encoding);
    if (name.isEmpty())
        return std::nullopt;
    QStringDecoder decoder(name.constData(), QStringConverter::Flag::Stateless);
    if (!decoder.isValid())
        return std::nullopt;
    QString text = decoder.decode(bytes);
    if (decoder.hasError())
        return std::nullopt;
    return text;
}

EncodedBytes bytesFromString(const QString &text, qsizetype maxCharacters, StringEncoding encoding,
                             char *buffer, qsizetype maxBytes)
{
    EncodedBytes result;
    if (!buffer || maxBytes <= 0 || maxCharacters <= 0)
        return result;
    const qsizetype end = qMin(maxCharacters, text.size());

    if (isAsciiSubset(encoding)) {
        while (result.characters < end && result.bytes < maxBytes
               && text.at(result.characters).unicode() <= 0x7f) {
            buffer[result.bytes++] = char(text.at(result.characters).unicode());
            ++result.characters;
        }
        return result;
    }

    const QByteArray name = stringEncodingName(encoding);
    QStringEncoder encoder(name.isEmpty() ? "UTF-8" : name.constData(), QStringConverter::Flag::Stateless);
    QStringDecoder decoder(name.isEmpty() ? "UTF-8" : name.constData(), QStringConverter::Flag::Stateless);
    if (name.isEmpty() || !encoder.isValid() || !decoder.isValid())
        return result;

    qsizetype i = 0;
    while (i < end) {
        // One character: a surrogate pair counts as one, and a pair cut by
        // the range cannot be converted.
        qsizetype units = 1;
        if (text.at(i).isHighSurrogate() && i + 1 < end && text.at(i + 1).isLowSurrogate())
            units = 2;
        const QStringView character = QStringView(text).mid(i, units);
        if (character.front().isSurrogate() && units == 1)
            break;
        const QByteArray bytes = encoder.encode(character);
        // A converter may substitute what it cannot hold; only a round trip proves it held it.
        if (encoder.hasError() || bytes.isEmpty() || QString(decoder.decode(bytes)) != character || decoder.hasError())
            break;
        if (result.bytes + bytes.size() > maxBytes)
            break;
        std::memcpy(buffer + result.bytes, bytes.constData(), size_t(bytes.size()));
        result.bytes += bytes.size();
        i += units;
        result.characters = i;
    }
    return result;
}

} // namespace pde
