#include "platform/UserDefaults.h"

#include "platform/DomainFiles_p.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QMutex>
#include <QUrl>

namespace pde {

namespace {

// On the application object, the one thing the host and its plug-ins share.
constexpr char kWritesSuspendedProperty[] = "pde.preferenceWritesSuspended";

QMutex sharedMutex;
std::shared_ptr<UserDefaults> sharedDefaults;

// Queue names may hold "/" (instances); no name may leave the folder.
QString encodedDomainName(const QString &name)
{
    QByteArray encoded = QUrl::toPercentEncoding(name, QByteArray("-_.@+"));
    if (encoded.startsWith('.'))
        encoded.replace(0, 1, "%2E");
    return UserDefaults::preferencesDirectory() + QLatin1Char('/') + QString::fromLatin1(encoded);
}

// The file that holds the domain now: the JSON file, or while there is none
// the first release's INI file. Empty when the domain has neither.
QString currentFile(const QString &name)
{
    const QString json = UserDefaults::fileNameForDomain(name);
    if (QFileInfo::exists(json))
        return json;
    const QString legacy = UserDefaults::legacyFileNameForDomain(name);
    if (QFileInfo::exists(legacy))
        return legacy;
    return QString();
}

std::optional<QVariantMap> readFile(const QString &path)
{
    if (path.isEmpty())
        return std::nullopt;
    if (path.endsWith(QStringLiteral(".json")))
        return domainfiles::readJson(path);
    return domainfiles::readLegacyIni(path);
}

QByteArray fileBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
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
    return encodedDomainName(name) + QStringLiteral(".json");
}

QString UserDefaults::legacyFileNameForDomain(const QString &name)
{
    return encodedDomainName(name) + QStringLiteral(".ini");
}

std::optional<QVariantMap> UserDefaults::persistentDomainForName(const QString &name) const
{
    if (name.isEmpty())
        return std::nullopt;
    auto pending = m_pending.constFind(name);
    if (pending != m_pending.cend())
        return *pending;
    return readFile(currentFile(name));
}

void UserDefaults::setPersistentDomain(const QVariantMap &domain, const QString &name)
{
    if (name.isEmpty())
        return;
    m_pending.insert(name, domain);
}

void UserDefaults::setWritesSuspended(bool suspended)
{
    if (QCoreApplication *app = QCoreApplication::instance())
        app->setProperty(kWritesSuspendedProperty, suspended);
}

bool UserDefaults::writesSuspended()
{
    const QCoreApplication *app = QCoreApplication::instance();
    return app && app->property(kWritesSuspendedProperty).toBool();
}

bool UserDefaults::synchronize()
{
    if (writesSuspended()) {
        m_pending.clear();
        return true;
    }
    bool ok = true;
    for (auto it = m_pending.cbegin(); it != m_pending.cend(); ++it) {
        const QString current = currentFile(it.key());
        const std::optional<QByteArray> bytes = domainfiles::encodeJson(it.value());
        if (!bytes) {
            qWarning("preferences: domain %s holds a value that cannot be stored; not written", qPrintable(it.key()));
            ok = false;
            continue;
        }
        // The same bytes again would cost disk syncs and change nothing. Bytes,
        // not values: QVariant finds "true" equal to true. A first-release file
        // is never equal, so the next write converts it.
        if (current == fileNameForDomain(it.key()) && fileBytes(current) == *bytes)
            continue;
        // A file that does not read as a domain may be the user's to repair.
        if (!current.isEmpty() && !readFile(current)) {
            qWarning("preferences: %s cannot be read as a domain; left as it is", qPrintable(current));
            ok = false;
            continue;
        }
        ok = domainfiles::replaceFile(fileNameForDomain(it.key()), *bytes) && ok;
    }
    m_pending.clear();
    return ok;
}

} // namespace pde
