#pragma once

#include <QList>
#include <QMap>
#include <QString>

#include <cups/cups.h>

#include <optional>

#include "host/agent/cups/HeldJob.h"

namespace pdeprint {

// The job with every attribute; nothing, with a one-line reason, when the
// server has no such job or cannot be asked.
std::optional<HeldJob> fetchJob(http_t *http, int jobId, QString *error);

// The current user's jobs that are held until released, oldest first.
std::optional<QList<HeldJob>> fetchHeldJobs(http_t *http, QString *error);

// Adds the ticket to the job as text attributes (the account attributes as
// names) and releases it, in one Set-Job-Attributes request by the current user.
bool releaseJob(http_t *http, int jobId, const QMap<QString, QString> &ticket, QString *error);

// Cancels the job, as its owner.
bool cancelJob(http_t *http, int jobId, QString *error);

} // namespace pdeprint
