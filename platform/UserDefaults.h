#pragma once

#include <QHash>
#include <QString>
#include <QVariantMap>

#include <memory>
#include <optional>

namespace pde {

// The user's preferences: named persistent domains, each a dictionary read
// whole and replaced whole. One JSON file a domain, under
// $XDG_CONFIG_HOME/print-preferences/ (~/.config when unset), read from its
// current bytes at every read. Values keep their types: booleans, integers
// (int when they fit in 32 bits, else qlonglong), doubles, strings,
// dictionaries and lists (as QVariantList), empty ones included.
//
// A domain file is replaced atomically and is private to the user (0600).
// Reading never creates a file or a folder. A domain that has no JSON file
// yet is read from the first release's INI file, whose values are text; the
// domain's next write then makes the JSON file and leaves the INI file alone.
class UserDefaults
{
public:
    // Drops the shared object, so that the next standardUserDefaults() reads
    // the files afresh.
    static void resetStandardUserDefaults();
    static std::shared_ptr<UserDefaults> standardUserDefaults();

    // The domain, or nothing when it does not exist, cannot be read or is
    // damaged.
    std::optional<QVariantMap> persistentDomainForName(const QString &name) const;
    // Replaces the domain in memory; synchronize() writes it.
    void setPersistentDomain(const QVariantMap &domain, const QString &name);
    // Writes every replaced domain. False when a file could not be written,
    // when it exists but is damaged (it is then left alone), or when the
    // domain holds a value that would not read back as itself; the file then
    // still holds its previous contents.
    bool synchronize();

    // While suspended, synchronize() writes nothing and answers true: a dry
    // run reads the user's preferences but leaves them as they were. Holds
    // for the host and every plug-in it loaded, each of which has its own
    // copy of this class; needs the application object.
    static void setWritesSuspended(bool suspended);
    static bool writesSuspended();

    static QString preferencesDirectory();
    static QString fileNameForDomain(const QString &name);
    // Where the first release kept the domain.
    static QString legacyFileNameForDomain(const QString &name);

private:
    QHash<QString, QVariantMap> m_pending;
};

} // namespace pde
