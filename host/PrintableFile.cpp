#include "host/PrintableFile.h"

#include <QFile>
#include <QFileInfo>
#include <QMimeDatabase>

namespace pdeprint {

bool isPrintableFile(const QString &path, QString *error)
{
    const QFileInfo info(path);
    if (!info.exists()) {
        *error = QStringLiteral("%1: no such file").arg(path);
        return false;
    }
    if (!info.isFile()) {
        *error = QStringLiteral("%1: not a regular file").arg(path);
        return false;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("%1: cannot be read: %2").arg(path, file.errorString());
        return false;
    }
    if (info.size() == 0) {
        *error = QStringLiteral("%1: empty file, nothing to print").arg(path);
        return false;
    }
    // By content, not by name: a renamed binary is still a binary.
    const QMimeType type = QMimeDatabase().mimeTypeForData(&file);
    static const QStringList printable { QStringLiteral("text/plain"), QStringLiteral("application/pdf"),
                                         QStringLiteral("application/postscript"), QStringLiteral("image/png"),
                                         QStringLiteral("image/jpeg"), QStringLiteral("image/tiff"),
                                         QStringLiteral("image/gif") };
    for (const QString &name : printable) {
        if (type.inherits(name))
            return true;
    }
    *error = QStringLiteral("%1: cannot be printed (%2)").arg(path, type.name());
    return false;
}

} // namespace pdeprint
