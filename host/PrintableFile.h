#pragma once

#include <QString>

namespace pdeprint {

// Whether a file can be sent to a print queue: a readable, non-empty regular
// file of a type the queue's filters take (text, PDF, PostScript, images).
// False with a one-line reason.
bool isPrintableFile(const QString &path, QString *error);

} // namespace pdeprint
