#include "host/printer/SavedOptions.h"

#include <QByteArray>

namespace pdeprint {

namespace {

// libcups lists what it knows of the destination among its options; those
// describe the printer, not the job.
bool describesPrinter(const char *name)
{
    return qstrncmp(name, "printer-", 8) == 0 || qstrncmp(name, "marker-", 7) == 0
        || qstrcmp(name, "device-uri") == 0 || qstrcmp(name, "auth-info-required") == 0;
}

} // namespace

QList<std::pair<QString, QString>> savedOptions(http_t *http, const pde::Printer &printer)
{
    const QByteArray name = printer.name.toUtf8();
    const QByteArray instance = printer.instance.toUtf8();
    cups_dest_t *dest = cupsGetNamedDest(http, name.constData(), instance.isEmpty() ? nullptr : instance.constData());
    QList<std::pair<QString, QString>> options;
    if (!dest)
        return options;
    for (int i = 0; i < dest->num_options; ++i) {
        if (!describesPrinter(dest->options[i].name))
            options.append({ QString::fromUtf8(dest->options[i].name), QString::fromUtf8(dest->options[i].value) });
    }
    cupsFreeDests(1, dest);
    return options;
}

} // namespace pdeprint
