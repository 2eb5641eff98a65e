#pragma once

#include <QString>
#include <QStringList>

namespace pdeprint {

// Creates an empty preferences domain "<prefix><printerId>" for each prefix
// that has none yet, so that panels, which only rewrite existing domains,
// can keep their values from the first job. Domains that exist are left as
// they are. False when a domain could not be written.
bool ensurePreferenceDomains(const QStringList &prefixes, const QString &printerId, QString *error);

} // namespace pdeprint
