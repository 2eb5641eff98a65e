#pragma once

#include <QString>
#include <QStringList>

#include <cups/ppd.h>

namespace pdeprint {

class CupsConnection;

// How the billing codes of a queue's jobs reach its printer and accounting.
struct BillingRoutes
{
    // PPD options that a loaded panel handles: the queue's filters read the
    // panels' ticket.
    QStringList panelOptions;
    // The printer takes `job-account-id`: the PPD says *cupsJobAccountId: True,
    // or (a queue without a PPD) the queue reports job-account-id-supported.
    bool accountId = false;
    // The queue has a PPD that libcups could read.
    bool hasPpd = false;

    bool reachPrinter() const { return !panelOptions.isEmpty() || accountId; }
};

// The routes of a PPD (null: none) for the panels' option keys.
BillingRoutes billingRoutesOf(ppd_file_t *ppd, const QStringList &panelOptionKeys);

// The routes of a queue on the server: its PPD, or, without one, what the
// queue reports.
BillingRoutes billingRoutesOf(CupsConnection &cups, const QString &queue, const QStringList &panelOptionKeys);

// The job-account-id the queue gives every job that arrives without one: a
// placeholder, where the printer requires a code; empty when none.
QString queueAccountIdDefault(CupsConnection &cups, const QString &queue);

} // namespace pdeprint
