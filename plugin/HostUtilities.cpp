#include "plugin/HostUtilities.h"

#include <QFile>
#include <QStringList>

#include <cstring>
#include <limits>

namespace {

// VERSION_ID of an os-release file, unquoted; null when absent, empty when
// present without a value.
QString readVersionId(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return QString();
    while (!file.atEnd()) {
        const QByteArray line = file.readLine(4096).trimmed();
        if (!line.startsWith("VERSION_ID="))
            continue;
        QByteArray value = line.mid(int(std::strlen("VERSION_ID=")));
        if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front())
            value = value.mid(1, value.size() - 2);
        return value.isEmpty() ? QStringLiteral("") : QString::fromUtf8(value);
    }
    return QString();
}

// The leading decimal integer of a part; 0 when it has none.
qint32 leadingInteger(const QString &part)
{
    qint64 value = 0;
    qsizetype i = 0;
    bool negative = false;
    const QString text = part.trimmed();
    if (i < text.size() && (text[i] == QLatin1Char('-') || text[i] == QLatin1Char('+')))
        negative = text[i++] == QLatin1Char('-');
    for (; i < text.size() && text[i].isDigit() && text[i].unicode() < 0x80; ++i) {
        value = value * 10 + (text[i].unicode() - '0');
        if (value > std::numeric_limits<qint32>::max())
            return negative ? std::numeric_limits<qint32>::min() : std::numeric_limits<qint32>::max();
    }
    return qint32(negative ? -value : value);
}

} // namespace

void get_system_version(qint32 *major, qint32 *minor, qint32 *bugFix, const QString &osReleasePath)
{
    if (!major || !minor || !bugFix)
        return;
    const qint32 defaults[3] = { *major, *minor, *bugFix };
    qint32 *out[3] = { major, minor, bugFix };

    // An empty VERSION_ID is one part, with major 0; only an absent one has none.
    const QString version = readVersionId(osReleasePath);
    const QStringList parts = version.isNull() ? QStringList() : version.split(QLatin1Char('.'));
    const qint32 n = qint32(qMin<qsizetype>(parts.size(), 3));
    for (qint32 i = 0; i < 3; ++i)
        *out[i] = i < n ? leadingInteger(parts.at(i)) : defaults[i];
}

bool runningOnLeopardOrLater(const QString &osReleasePath)
{
    qint32 major = 10, minor = 4, bugFix = 0;
    get_system_version(&major, &minor, &bugFix, osReleasePath);
    return major > 10 || (major == 10 && minor > 4);
}

namespace {

// The LanguageEncoding as the file states it. libcups answers "UTF-8" in
// lang_encoding for every file that has one (it converts option texts), but
// keeps the ModelName in the file's own encoding, and the attribute as written.
const char *languageEncodingOf(const ppd_file_t *ppd)
{
    for (int i = 0; i < ppd->num_attrs && ppd->attrs; ++i) {
        const ppd_attr_t *attr = ppd->attrs[i];
        if (attr && std::strcmp(attr->name, "LanguageEncoding") == 0)
            return attr->value;
    }
    return ppd->lang_encoding;
}

} // namespace

pde::StringEncoding getEncodingFromPPD(const ppd_file_t *ppd)
{
    const char *languageEncoding = ppd ? languageEncodingOf(ppd) : nullptr;
    if (!languageEncoding)
        return pde::kStringEncodingMacRoman;
    static const struct { const char *name; pde::StringEncoding encoding; } table[] = {
        { "ISOLatin1", pde::kStringEncodingISOLatin1 },
        { "WindowsANSI", pde::kStringEncodingWindowsLatin1 },
        { "JIS83-RKSJ", pde::kStringEncodingShiftJIS },
        { "UTF-8", pde::kStringEncodingUTF8 },
        { "UTF8", pde::kStringEncodingUTF8 },
    };
    for (const auto &entry : table) {
        if (std::strcmp(languageEncoding, entry.name) == 0)
            return entry.encoding;
    }
    return pde::kStringEncodingMacRoman;
}
