#pragma once

// Private to UserDefaults: reading and writing one domain's file.

#include <QByteArray>
#include <QString>
#include <QVariantMap>

#include <optional>

namespace pde::domainfiles {

// The domain as JSON text, or nothing when it holds a value that would not
// read back as itself (a type JSON cannot hold, a number that is not finite,
// nesting deeper than a reader accepts).
std::optional<QByteArray> encodeJson(const QVariantMap &domain);
// The domain in a JSON file, or nothing for a missing, unreadable or damaged
// file. Integers read as int when they fit in 32 bits, else as qlonglong.
std::optional<QVariantMap> readJson(const QString &path);
// The domain in an INI file of the first release, values as its text.
std::optional<QVariantMap> readLegacyIni(const QString &path);

// Writes the bytes beside the file and renames them into place, so that a
// reader (or a crash) sees the old file or the new one. Then removes what
// interrupted writes of the same file left behind.
bool replaceFile(const QString &path, const QByteArray &bytes);

} // namespace pde::domainfiles
