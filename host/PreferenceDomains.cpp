#include "host/PreferenceDomains.h"

#include "platform/UserDefaults.h"

namespace pdeprint {

bool ensurePreferenceDomains(const QStringList &prefixes, const QString &printerId, QString *error)
{
    pde::UserDefaults::resetStandardUserDefaults();
    const auto defaults = pde::UserDefaults::standardUserDefaults();
    QStringList created;
    for (const QString &prefix : prefixes) {
        const QString name = prefix + printerId;
        if (defaults->persistentDomainForName(name) || created.contains(name))
            continue;
        defaults->setPersistentDomain(QVariantMap(), name);
        created << name;
    }
    if (created.isEmpty() || defaults->synchronize())
        return true;
    *error = QStringLiteral("cannot create preferences in %1").arg(pde::UserDefaults::preferencesDirectory());
    return false;
}

} // namespace pdeprint
