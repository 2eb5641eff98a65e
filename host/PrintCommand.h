#pragma once

#include <QString>
#include <QTextStream>

#include "host/CommandLine.h"

namespace pdeprint {

// Exit codes of pdeprint.
inline constexpr int kExitOk = 0;
inline constexpr int kExitFailure = 1;   // bad input or a failed submission; nothing was submitted
inline constexpr int kExitUsage = 2;     // the command line itself is wrong
inline constexpr int kExitCancelled = 3; // the user cancelled the dialog

// Whether this run shows the dialog: asked for, or by default where a
// display is available.
bool wantsDialog(const Options &options);

// Runs one pdeprint command inside a QApplication. Errors go to `err` as one
// line each, results (ticket, summaries, job id) to `out`.
int runPrintCommand(const Options &options, QTextStream &out, QTextStream &err);

} // namespace pdeprint
