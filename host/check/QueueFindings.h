#pragma once

#include "host/check/Finding.h"

#include <QStringList>

#include <cups/cups.h>

#include <optional>

namespace pdeprint {

class CupsConnection;

// What the scheduler says of a queue, as far as the check needs it.
struct QueueState
{
    QString name;
    QString holdUntil;        // job-hold-until-default
    QString policy;           // printer-op-policy
    QStringList mandatory;    // printer-mandatory-job-attributes
    QString accountIdDefault; // job-account-id-default
};

// Every queue of the server; nothing with a reason when it does not answer.
std::optional<std::vector<QueueState>> fetchQueues(http_t *http, QString *error);

// Whether the queue holds jobs, whether its PPD loads, how its codes reach the
// printer and whether the agent serves it (`served`).
Findings queueFindings(CupsConnection &cups, const QueueState &queue, const QStringList &panelOptionKeys,
                       bool *served);

} // namespace pdeprint
