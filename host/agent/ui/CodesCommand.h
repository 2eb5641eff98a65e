#pragma once

#include <QString>
#include <QTextStream>

#include <vector>

#include "host/PluginLoader.h"

namespace pdeprint {

class CupsConnection;

// pdeprint --codes: the queue's panels in a window, without a job (the
// default queue when `queue` is empty). Answers the exit code.
int runCodesCommand(const std::vector<LoadedPlugin> &plugins, CupsConnection &cups, const QString &queue,
                    QTextStream &err);

} // namespace pdeprint
