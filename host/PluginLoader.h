#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <QTextStream>

#include <memory>
#include <vector>

namespace pde {
class AccountCodes;
class Bundle;
class PanelFactory;
}

namespace pdeprint {

struct LoadedPlugin
{
    std::shared_ptr<pde::Bundle> bundle;
    pde::PanelFactory *factory = nullptr; // the module's root object, owned by its loader
    QString path;
    // Preference domains the host creates per printer: "<prefix><printer id>".
    QStringList preferenceDomainPrefixes;
    // Print settings that, once the panels have saved, say the queue's record
    // is kept ("KeptWhen" in the metadata): the agent may then release a held
    // job without asking. Empty: never.
    QMap<QString, QString> keptWhen;
    // Which print settings carry the job's account code; null when the
    // plug-in's panels write none.
    pde::AccountCodes *accountCodes = nullptr;
};

// Folders searched for plug-ins, in order: the build tree's, the install
// folder beside the executable, $PDEPRINT_PLUGIN_PATH, then `extraFolders`.
// Folders that do not exist are left out.
QStringList pluginSearchPath(const QStringList &extraFolders);

// Loads every panel plug-in ("*.so") of the folders and initialises its
// factory. A module that is not a panel plug-in is skipped with a warning in
// `warnings`; one bundle identifier is loaded once, from the first folder.
std::vector<LoadedPlugin> loadPlugins(const QStringList &folders, QStringList *warnings);

// The plug-ins of the search path with `extraFolders`, as a command loads
// them: each warning a line on `err`.
std::vector<LoadedPlugin> loadPlugins(const QStringList &extraFolders, QTextStream &err);

} // namespace pdeprint
