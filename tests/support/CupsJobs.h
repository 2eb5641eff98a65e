#pragma once

// Jobs on the test's scheduler, as lp submits them and as IPP shows them.

#include <QMap>
#include <QString>
#include <QStringList>

#include <cups/cups.h>

namespace pdetest {

// Submits the sample text to `queue` with lp and its `options` (by default
// raw: no filter runs), as `user` when given; answers the job id, 0 on failure.
int lp(const char *queue, const char *user = nullptr, const QStringList &options = { "-o", "raw" });
// The job id of "request id is QUEUE-ID" in lp's or pdeprint's output; 0 when there is none.
int jobIdIn(const QString &text);
// The job's attributes as text, as `user` (by default this one) is shown them; empty for no such job.
QMap<QString, QString> jobAttributes(int jobId, const char *user = nullptr);
// The job's state, 0 for no such job.
ipp_jstate_t jobState(int jobId);

} // namespace pdetest
