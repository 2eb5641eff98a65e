#include "platform/UserDefaults.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMutex>
#include <QSettings>
#include <QTemporaryFile>
#include <QUrl>

#include <cstdio>

namespace pde {

namespace {

QMutex sharedMutex;
std::shared_ptr<UserDefaults> sharedDefaults;

void readGroup(QSettings &settings, QVariantMap &into)
{
    for (const QString &key : settings.childKeys())
        into.insert(key, settings.value(key));
    for (const QString &group : settings.childGroups()) {
        settings.beginGroup(group);
        QVariantMap child;
        readGroup(settings, child);
        settings.endGroup();
        into.insert(group, child);
    }
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

    const QString path = fileNameForDomain(name);
    if (!QFileInfo(path).isFile() || !QFileInfo(path).isReadable())
        return std::nullopt;
    QSettings settings(path, QSettings::IniFormat);
    if (settings.status() != QSettings::NoError)
        return std::nullopt;
    QVariantMap domain;
    readGroup(settings, domain);
    return domain;
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
    for (auto it = m_pending.cbegin(); it != m_pending.cend(); ++it)
        ok = writeDomainFile(fileNameForDomain(it.key()), it.value()) && ok;
    m_pending.clear();
    return ok;
}

} // namespace pde
