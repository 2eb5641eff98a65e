#include "tests/support/TestSupport.h"

#include "platform/UserDefaults.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace pdetest {

QString testDataPath(const QString &name)
{
    return QStringLiteral(PDE_TEST_DATA_DIR "/") + name;
}

QString examplePath(const QString &name)
{
    return QStringLiteral(PDE_EXAMPLES_DIR "/") + name;
}

QString pluginBuildDirectory()
{
    return QStringLiteral(PDE_PLUGIN_BUILD_DIR);
}

QString samplePpdPath()
{
    return examplePath(QStringLiteral("nurat-qr7150k.ppd"));
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return QDir().mkpath(QFileInfo(path).absolutePath()) && file.open(QIODevice::WriteOnly | QIODevice::Truncate)
        && file.write(bytes) == bytes.size();
}

void PpdCloser::operator()(ppd_file_t *ppd) const
{
    ppdClose(ppd);
}

PpdPtr openPpd(const QString &path)
{
    return PpdPtr(ppdOpenFile(QFile::encodeName(path).constData()));
}

void writeDomain(const std::optional<QVariantMap> &domain, const QString &name)
{
    pde::UserDefaults::resetStandardUserDefaults();
    QFile::remove(pde::UserDefaults::fileNameForDomain(name));
    if (domain) {
        auto defaults = pde::UserDefaults::standardUserDefaults();
        defaults->setPersistentDomain(*domain, name);
        defaults->synchronize();
    }
    pde::UserDefaults::resetStandardUserDefaults();
}

std::optional<QVariantMap> readDomain(const QString &name)
{
    pde::UserDefaults::resetStandardUserDefaults();
    return pde::UserDefaults::standardUserDefaults()->persistentDomainForName(name);
}

QVariantMap readRecord()
{
    return readDomain().value_or(QVariantMap()).value(QStringLiteral("Billing Code")).toMap();
}

} // namespace pdetest
