#include "host/printer/Destination.h"

#include <QFile>

namespace pdeprint {

pde::Printer printerFromName(const QString &name)
{
    const qsizetype slash = name.indexOf(QLatin1Char('/'));
    if (slash < 0)
        return { name, {} };
    return { name.left(slash), name.mid(slash + 1) };
}

bool chooseQueue(CupsConnection &cups, const QString &name, pde::Printer *printer, QString *error)
{
    if (!name.isEmpty()) {
        *printer = printerFromName(name);
        return cups.hasQueue(*printer, error);
    }
    std::optional<pde::Printer> queue = cups.defaultQueue();
    if (!queue) {
        *error = QStringLiteral("no printer given and the CUPS server has no default printer (use --printer)");
        return false;
    }
    *printer = *queue;
    return true;
}

bool findDestination(const Options &options, Destination *destination, QString *error)
{
    // A dry run with a PPD of its own needs no server at all.
    const bool needsServer = !options.dryRun || options.ppdFile.isEmpty() || options.printer.isEmpty();
    if (!options.ppdFile.isEmpty()) {
        const QByteArray path = QFile::encodeName(options.ppdFile);
        destination->ppd.reset(ppdOpenFile(path.constData()));
        if (!destination->ppd) {
            *error = QStringLiteral("%1: not a readable PPD file").arg(options.ppdFile);
            return false;
        }
        ppdMarkDefaults(destination->ppd.get());
    }
    if (!needsServer) {
        destination->printer = printerFromName(options.printer);
        return true;
    }
    destination->cups = CupsConnection::open(error);
    if (!destination->cups)
        return false;
    if (!chooseQueue(*destination->cups, options.printer, &destination->printer, error))
        return false;
    if (!destination->ppd)
        destination->ppd.reset(destination->cups->openQueuePpd(destination->printer, error));
    // A driverless queue has no PPD; its panels then work without one.
    return true;
}

bool switchDestination(const QString &printerName, Destination *destination, QString *error)
{
    if (!destination->cups)
        destination->cups = CupsConnection::open(error);
    if (!destination->cups)
        return false;
    const pde::Printer printer = printerFromName(printerName);
    if (!destination->cups->hasQueue(printer, error))
        return false;
    QString noPpd; // a queue without a PPD is still a queue
    destination->ppd.reset(destination->cups->openQueuePpd(printer, &noPpd));
    destination->printer = printer;
    return true;
}

} // namespace pdeprint
