#include "settings/TicketValues.h"

#include "platform/PrintSettings.h"
#include "settings/TicketKeys.h"
#include "settings/TicketText.h"

#include <cstring>
#include <limits>

namespace {

constexpr size_t kDecodedSize = 512;

} // namespace

std::optional<QByteArray> ticketValue(const pde::PrintSettings *settings, const char *key)
{
    QString value;
    if (PMPrintSettingsGetValue(settings, QString::fromLatin1(key), &value) != noErr)
        return std::nullopt;
    if (value.size() >= qsizetype(kTicketTextSize))
        return std::nullopt;
    for (QChar c : value) {
        if (c.unicode() > 0x7f || c.unicode() == 0)
            return std::nullopt;
    }
    return value.toLatin1();
}

qint32 leadingInteger(QStringView text)
{
    qsizetype i = 0;
    while (i < text.size() && (text[i] == u' ' || text[i] == u'\t' || text[i] == u'\n' || text[i] == u'\r'))
        ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == u'+' || text[i] == u'-'))
        negative = text[i++] == u'-';
    qint64 value = 0;
    for (; i < text.size() && text[i] >= u'0' && text[i] <= u'9'; ++i) {
        value = value * 10 + (text[i].unicode() - u'0');
        if (value > std::numeric_limits<qint32>::max())
            return negative ? std::numeric_limits<qint32>::min() : std::numeric_limits<qint32>::max();
    }
    return qint32(negative ? -value : value);
}

std::optional<qint32> ticketInteger(const pde::PrintSettings *settings, const char *key)
{
    QString value;
    if (PMPrintSettingsGetValue(settings, QString::fromLatin1(key), &value) != noErr)
        return std::nullopt;
    return leadingInteger(value);
}

bool ticketSwitch(const pde::PrintSettings *settings, const char *key)
{
    const std::optional<qint32> value = ticketInteger(settings, key);
    return value && *value != 0;
}

QString ticketCode(const pde::PrintSettings *settings, const char *key, pde::StringEncoding encoding)
{
    const std::optional<QByteArray> hex = ticketValue(settings, key);
    if (!hex)
        return QString();
    char text[kTicketTextSize] = {};
    std::memcpy(text, hex->constData(), size_t(hex->size()));
    unsigned char decoded[kDecodedSize] = {};
    myatoi(text, decoded, uint32_t(std::strlen(text)));
    if (decoded[0] == 0)
        return QString();
    const char *bytes = reinterpret_cast<const char *>(decoded);
    return pde::stringFromBytes(QByteArrayView(bytes, qsizetype(std::strlen(bytes))), encoding).value_or(QString());
}

uint32_t codeBytes(const QString &text, unsigned char (&code)[kCodeAreaSize])
{
    std::memset(code, 0, sizeof code);
    const pde::EncodedBytes encoded = pde::bytesFromString(text, qMin<qsizetype>(text.size(), kMaxCodeLength),
                                                           pde::systemStringEncoding(), reinterpret_cast<char *>(code),
                                                           kMaxCodeLength);
    return uint32_t(encoded.bytes);
}
