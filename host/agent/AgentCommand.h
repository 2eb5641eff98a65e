#pragma once

#include <QTextStream>

#include "host/CommandLine.h"

namespace pdeprint {

// --held, --release, --release-kept, --agent or --codes.
bool isAgentCommand(const Options &options);

// Runs one of them inside a QApplication; errors go to `err` as one line each.
int runAgentCommand(const Options &options, QTextStream &out, QTextStream &err);

} // namespace pdeprint
