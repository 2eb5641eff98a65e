#include "host/PluginLoader.h"

#include "platform/AccountCodes.h"
#include "platform/Bundle.h"
#include "platform/PanelFactory.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QPluginLoader>
#include <QSet>

namespace pdeprint {

namespace {

QStringList metadataStrings(const QString &path, const char *key)
{
    const QJsonObject meta = QPluginLoader(path).metaData().value(QLatin1String("MetaData")).toObject();
    QStringList strings;
    for (const QJsonValue &value : meta.value(QLatin1String(key)).toArray()) {
        if (value.isString() && !value.toString().isEmpty())
            strings << value.toString();
    }
    return strings;
}

QMap<QString, QString> metadataStringMap(const QString &path, const char *key)
{
    const QJsonObject meta = QPluginLoader(path).metaData().value(QLatin1String("MetaData")).toObject();
    QMap<QString, QString> map;
    const QJsonObject object = meta.value(QLatin1String(key)).toObject();
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (it.value().isString())
            map.insert(it.key(), it.value().toString());
    }
    return map;
}

} // namespace

QStringList pluginSearchPath(const QStringList &extraFolders)
{
    QStringList candidates;
    candidates << QStringLiteral(PDEPRINT_PLUGIN_BUILD_DIR);
    candidates << QCoreApplication::applicationDirPath() + QStringLiteral("/../") + QStringLiteral(PDEPRINT_PLUGIN_INSTALL_RELDIR);
    candidates << qEnvironmentVariable("PDEPRINT_PLUGIN_PATH").split(QLatin1Char(':'), Qt::SkipEmptyParts);
    candidates << extraFolders;

    QStringList folders;
    for (const QString &candidate : candidates) {
        const QFileInfo info(candidate);
        if (!info.isDir())
            continue;
        const QString folder = info.canonicalFilePath();
        if (!folders.contains(folder))
            folders << folder;
    }
    return folders;
}

std::vector<LoadedPlugin> loadPlugins(const QStringList &folders, QStringList *warnings)
{
    std::vector<LoadedPlugin> plugins;
    QSet<QString> identifiers;
    for (const QString &folder : folders) {
        const QFileInfoList modules = QDir(folder).entryInfoList({ QStringLiteral("*.so") }, QDir::Files, QDir::Name);
        for (const QFileInfo &module : modules) {
            QString error;
            std::shared_ptr<pde::Bundle> bundle = pde::Bundle::loadPlugIn(module.filePath(), &error);
            if (!bundle) {
                warnings->append(error);
                continue;
            }
            if (identifiers.contains(bundle->bundleIdentifier()))
                continue; // an earlier folder wins
            auto *factory = qobject_cast<pde::PanelFactory *>(bundle->principalObject());
            if (!factory) {
                warnings->append(QStringLiteral("%1: no panel factory").arg(module.filePath()));
                continue;
            }
            if (!factory->initWithBundle(bundle.get())) {
                warnings->append(QStringLiteral("%1: the plug-in refused to start").arg(module.filePath()));
                continue;
            }
            identifiers.insert(bundle->bundleIdentifier());
            plugins.push_back({ bundle, factory, module.filePath(),
                                metadataStrings(module.filePath(), "PreferenceDomainPrefixes"),
                                metadataStringMap(module.filePath(), "KeptWhen"),
                                qobject_cast<pde::AccountCodes *>(bundle->principalObject()) });
        }
    }
    return plugins;
}

std::vector<LoadedPlugin> loadPlugins(const QStringList &extraFolders, QTextStream &err)
{
    QStringList warnings;
    std::vector<LoadedPlugin> plugins = loadPlugins(pluginSearchPath(extraFolders), &warnings);
    for (const QString &warning : warnings)
        err << "pdeprint: warning: " << warning << Qt::endl;
    return plugins;
}

} // namespace pdeprint
