#pragma once

#include <QObject>
#include <QSet>
#include <QString>
#include <QTextStream>
#include <QTimer>

#include "host/agent/cups/HeldJob.h"
#include "host/agent/cups/JobEventWatcher.h"

namespace pdeprint {

class CupsConnection;
class HeldJobHandler;
class ServedQueues;

// Watches the scheduler for the current user's held jobs on served queues and
// offers each to the handler once: those already held at start, then new ones
// as their events arrive. Idle, it costs the server one Get-Notifications a
// poll; it lists the user's jobs only when events may have been missed.
class HeldJobAgent : public QObject
{
public:
    HeldJobAgent(CupsConnection &cups, ServedQueues &queues, HeldJobHandler &handler, QTextStream &err,
                 int pollMilliseconds = 1000);

    // The first poll, at once: false with a reason when the server cannot be
    // asked. Then polls on the event loop.
    bool start(QString *error);
    // The handler is finished with the job.
    void done(int jobId) { m_offered.remove(jobId); }
    const JobEventWatcher &watcher() const { return m_watcher; }

private:
    bool tick(QString *error);
    void consider(int jobId);
    void offer(const HeldJob &job);

    CupsConnection &m_cups;
    ServedQueues &m_queues;
    HeldJobHandler &m_handler;
    QTextStream &m_err;
    JobEventWatcher m_watcher;
    QTimer m_timer;
    QSet<int> m_seen;    // offered in this run: never offered again
    QSet<int> m_offered; // offered and not done
    bool m_resyncPending = false;
    bool m_failing = false;
};

} // namespace pdeprint
