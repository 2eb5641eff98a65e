#include "platform/UserDefaults.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMutex>
#include <QSettings>
#include <QStringDecoder>
#include <QTemporaryFile>
#include <QUrl>

#include <cstdio>

namespace pde {

namespace {

QMutex sharedMutex;
std::shared_ptr<UserDefaults> sharedDefaults;

// Dictionaries nest this deep at most; a file that nests deeper is not ours.
constexpr int kMaxGroupDepth = 8;

bool readGroup(QSettings &settings, QVariantMap &into, int depth = 0)
{
    for (const QString &key : settings.childKeys())
        into.insert(key, settings.value(key));
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

void writeGroup(QSettings &settings, const QVariantMap &map)
{
    for (auto it = map.cbegin(); it != map.cend(); ++it) {
        if (it->typeId() == QMetaType::QVariantMap) {
            settings.beginGroup(it.key());
            writeGroup(settings, it->toMap());
            settings.endGroup();
        } else {
            settings.setValue(it.key(), *it);
        }
    }
}

// Writes the domain beside its file and renames it into place, so that a
// reader sees the old file or the new one, never a part of either.
bool writeDomainFile(const QString &path, const QVariantMap &domain)
{
    if (!QDir().mkpath(QFileInfo(path).absolutePath()))
        return false;
    QFile::setPermissions(QFileInfo(path).absolutePath(),
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);

    QTemporaryFile temporary(path + QStringLiteral(".XXXXXX"));
    temporary.setAutoRemove(true);
    if (!temporary.open()) // created 0600
        return false;
    const QString temporaryPath = temporary.fileName();
    temporary.close();
    {
        QSettings settings(temporaryPath, QSettings::IniFormat);
        settings.clear();
        writeGroup(settings, domain);
        settings.sync();
        if (settings.status() != QSettings::NoError)
            return false;
    }
    if (!QFile::setPermissions(temporaryPath, QFileDevice::ReadOwner | QFileDevice::WriteOwner))
        return false;
    if (std::rename(QFile::encodeName(temporaryPath).constData(), QFile::encodeName(path).constData()) != 0)
        return false;
    temporary.setAutoRemove(false);
    return true;
}

// A file that QSettings would read without complaint may still not be one
// this service wrote: only text lines of groups, keys and comments count.
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

bool allValuesValid(const QVariantMap &map)
{
    for (const QVariant &value : map) {
        if (!value.isValid())
            return false;
        if (value.typeId() == QMetaType::QVariantMap && !allValuesValid(value.toMap()))
            return false;
    }
    return true;
}

// The domain in the file, or nothing for a missing, unreadable or damaged file.
std::optional<QVariantMap> readDomainFile(const QString &path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    if (!isWellFormedIni(file.readAll()) || file.error() != QFileDevice::NoError)
        return std::nullopt;
    file.close();

    QSettings settings(path, QSettings::IniFormat);
    if (settings.status() != QSettings::NoError)
        return std::nullopt;
    QVariantMap domain;
    if (!readGroup(settings, domain) || !allValuesValid(domain))
        return std::nullopt;
    return domain;
}

} // namespace

void UserDefaults::resetStandardUserDefaults()
{
    QMutexLocker lock(&sharedMutex);
    sharedDefaults.reset();
}

std::shared_ptr<UserDefaults> UserDefaults::standardUserDefaults()
{
    QMutexLocker lock(&sharedMutex);
    if (!sharedDefaults)
        sharedDefaults = std::make_shared<UserDefaults>();
    return sharedDefaults;
}

QString UserDefaults::preferencesDirectory()
{
    QString base = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (base.isEmpty() || !QDir::isAbsolutePath(base))
        base = QDir::homePath() + QStringLiteral("/.config");
    return base + QStringLiteral("/print-preferences");
}

QString UserDefaults::fileNameForDomain(const QString &name)
{
    // Queue names may hold "/" (instances); no name may leave the folder.
    QByteArray encoded = QUrl::toPercentEncoding(name, QByteArray("-_.@+"));
    if (encoded.startsWith('.'))
        encoded.replace(0, 1, "%2E");
    return preferencesDirectory() + QLatin1Char('/') + QString::fromLatin1(encoded) + QStringLiteral(".ini");
}

std::optional<QVariantMap> UserDefaults::persistentDomainForName(const QString &name) const
{
    if (name.isEmpty())
        return std::nullopt;
    auto pending = m_pending.constFind(name);
    if (pending != m_pending.cend())
        return *pending;
    return readDomainFile(fileNameForDomain(name));
}

void UserDefaults::setPersistentDomain(const QVariantMap &domain, const QString &name)
{
    if (name.isEmpty())
        return;
    m_pending.insert(name, domain);
}

bool UserDefaults::synchronize()
{
    bool ok = true;
    for (auto it = m_pending.cbegin(); it != m_pending.cend(); ++it) {
        const QString path = fileNameForDomain(it.key());
        if (QFileInfo::exists(path)) {
            const std::optional<QVariantMap> stored = readDomainFile(path);
            // A file that does not read as a domain may be the user's to repair.
            if (!stored) {
                qWarning("preferences: %s cannot be read as a domain; left as it is", qPrintable(path));
                ok = false;
                continue;
            }
            // Nothing changed: a rewrite would cost two disk syncs and keep the same record.
            if (*stored == it.value())
                continue;
        }
        ok = writeDomainFile(path, it.value()) && ok;
    }
    m_pending.clear();
    return ok;
}

} // namespace pde
