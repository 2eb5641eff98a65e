// The first release kept each domain as an INI file written by QSettings.
// Such a file is read until the domain's next write replaces it with JSON.

#include "platform/DomainFiles_p.h"

#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStringDecoder>
#include <QTemporaryFile>

namespace pde::domainfiles {

namespace {

// The first release nested its record one group deep; deeper is not ours.
constexpr int kMaxGroupDepth = 8;

bool readGroup(QSettings &settings, QVariantMap &into, int depth = 0)
{
    for (const QString &key : settings.childKeys()) {
        // The first release wrote text only; anything else is not its file.
        const QVariant value = settings.value(key);
        if (value.typeId() != QMetaType::QString && value.typeId() != QMetaType::QStringList)
            return false;
        into.insert(key, value);
    }
    for (const QString &group : settings.childGroups()) {
        // A key that begins with "/" names an empty group, which is the
        // group itself: descending into it would never end.
        if (group.isEmpty() || depth >= kMaxGroupDepth)
            return false;
        settings.beginGroup(group);
        QVariantMap child;
        const bool ok = readGroup(settings, child, depth + 1);
        settings.endGroup();
        if (!ok)
            return false;
        into.insert(group, child);
    }
    return true;
}

// A file that QSettings would read without complaint may still not be one
// the first release wrote: only text lines of groups, keys and comments count.
bool isWellFormedIni(const QByteArray &bytes)
{
    if (bytes.contains('\0'))
        return false;
    QStringDecoder utf8(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    // Decoding is lazy: it runs when the result becomes a string.
    const QString text = utf8.decode(bytes);
    if (utf8.hasError())
        return false;
    for (QByteArray line : bytes.split('\n')) {
        line = line.trimmed();
        if (line.isEmpty() || line.startsWith(';') || line.startsWith('#'))
            continue;
        if (line.startsWith('[')) {
            if (!line.endsWith(']'))
                return false;
            continue;
        }
        if (line.indexOf('=') <= 0)
            return false;
    }
    return true;
}

} // namespace

std::optional<QVariantMap> readLegacyIni(const QString &path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError || !isWellFormedIni(bytes))
        return std::nullopt;

    // QSettings keeps every file it read in a process-wide cache and serves
    // it again while size and time stamp look unchanged. A copy under a name
    // never used before makes it parse these bytes.
    QTemporaryFile copy; // created 0600, removed on return
    if (!copy.open() || copy.write(bytes) != bytes.size() || !copy.flush())
        return std::nullopt;
    QSettings settings(copy.fileName(), QSettings::IniFormat);
    if (settings.status() != QSettings::NoError)
        return std::nullopt;
    QVariantMap domain;
    if (!readGroup(settings, domain))
        return std::nullopt;
    return domain;
}

} // namespace pde::domainfiles
