#pragma once

#include <QTextStream>

#include "host/CommandLine.h"

namespace pdeprint {

// --check: one line per finding on `out`, each beginning with ok, warning or
// problem. Exits 1 when there is a problem, 2 without a server. Reads only.
int runCheckCommand(const Options &options, QTextStream &out, QTextStream &err);

} // namespace pdeprint
