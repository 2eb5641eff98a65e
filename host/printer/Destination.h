#pragma once

#include <QString>

#include <cups/ppd.h>

#include <memory>

#include "host/CommandLine.h"
#include "host/CupsQueue.h"
#include "platform/PrintSession.h"

namespace pdeprint {

struct PpdCloser
{
    void operator()(ppd_file_t *ppd) const { ppdClose(ppd); }
};
using PpdPtr = std::unique_ptr<ppd_file_t, PpdCloser>;

// "queue" or "queue/instance".
pde::Printer printerFromName(const QString &name);

// The queue named "queue" or "queue/instance", or the server's default when
// the name is empty; false with a one-line reason when there is none.
bool chooseQueue(CupsConnection &cups, const QString &name, pde::Printer *printer, QString *error);

// Everything a run needs before the panels are made.
struct Destination
{
    pde::Printer printer;
    PpdPtr ppd;
    std::unique_ptr<CupsConnection> cups; // null for a dry run with its own PPD
};

// The queue of the command line (or the server's default) with its PPD, or
// the --ppd file. A queue without a PPD leaves `ppd` null and a warning in
// `error` while answering true.
bool findDestination(const Options &options, Destination *destination, QString *error);

// Another queue of the same server, chosen in the dialog: `destination` gets
// its printer and PPD, connecting first when it has no connection yet.
bool switchDestination(const QString &printerName, Destination *destination, QString *error);

} // namespace pdeprint
