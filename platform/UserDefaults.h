#pragma once

#include <QHash>
#include <QString>
#include <QVariantMap>

#include <memory>
#include <optional>

namespace pde {

// The user's preferences: named persistent domains, each a dictionary read
// whole and replaced whole. One INI file a domain, under
// $XDG_CONFIG_HOME/print-preferences/ (~/.config when unset); nested
// dictionaries are INI groups. Values come back as the INI file holds them
// (strings), so readers convert with QVariant::toBool()/toInt().
//
// A domain file is replaced atomically and is private to the user (0600).
// Reading never creates a file or a folder.
class UserDefaults
{
public:
    // Drops the shared object, so that the next standardUserDefaults() reads
    // the files afresh.
    static void resetStandardUserDefaults();
    static std::shared_ptr<UserDefaults> standardUserDefaults();

    // The domain, or nothing when it does not exist, cannot be read or is
    // damaged (not text of groups and keys).
    std::optional<QVariantMap> persistentDomainForName(const QString &name) const;
    // Replaces the domain in memory; synchronize() writes it.
    void setPersistentDomain(const QVariantMap &domain, const QString &name);
    // Writes every replaced domain. False when a file could not be written,
    // or when it exists but is damaged (it is then left alone); the file then
    // still holds its previous contents.
    bool synchronize();

    static QString preferencesDirectory();
    static QString fileNameForDomain(const QString &name);

private:
    QHash<QString, QVariantMap> m_pending;
};

} // namespace pde
