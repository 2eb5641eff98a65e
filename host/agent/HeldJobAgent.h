#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QSet>
#include <QString>
#include <QTextStream>
#include <QTimer>

#include "host/agent/Backoff.h"
#include "host/agent/cups/HeldJob.h"
#include "host/agent/cups/JobEventWatcher.h"
#include "host/agent/dbus/SchedulerBusSignals.h"

namespace pdeprint {

class CupsConnection;
class HeldJobHandler;
class ServedQueues;

// Watches the scheduler for the current user's held jobs on served queues and
// offers each to the handler once: those already held at start, then new ones
// as their events arrive. Idle, it costs the server one Get-Notifications a
// poll; it lists the user's jobs only when events may have been missed.
// Where the scheduler's notifier signals on the system bus, a signal fetches
// the events at once; the poll stays as the safety net, slower once a
// signal has arrived.
// The connection is held only for each poll, so that a server's client
// limit counts the agents polling at that moment, not those logged in. A
// server that is away or refuses is waited for, never a reason to stop.
class HeldJobAgent : public QObject
{
public:
    HeldJobAgent(CupsConnection &cups, ServedQueues &queues, HeldJobHandler &handler, QTextStream &err,
                 int pollMilliseconds = 1000);
    ~HeldJobAgent() override; // cancels the subscriptions

    // The first poll, at once; then polls on the event loop.
    void start();
    // The handler is finished with the job.
    void done(int jobId) { m_offered.remove(jobId); }

private:
    void pollNow();
    void wake();
    bool tick(QString *error);
    bool exchange(QString *error);
    int nextPollMilliseconds() const;
    void consider(int jobId);
    void offer(const HeldJob &job);

    CupsConnection &m_cups;
    ServedQueues &m_queues;
    HeldJobHandler &m_handler;
    QTextStream &m_err;
    JobEventWatcher m_watcher;
    SchedulerBusSignals m_bus;
    QTimer m_timer;
    QTimer m_wakeTimer;
    QElapsedTimer m_sinceTick;
    Backoff m_backoff;
    int m_pollMilliseconds;
    int m_failedDelay = 0;      // the backoff's delay while the server is away, else 0
    bool m_busProven = false;   // a signal of our own subscription arrived
    bool m_subscribed = true;   // false: the server refused one, and jobs are listed instead
    QSet<int> m_seen;    // offered in this run: never offered again
    QSet<int> m_offered; // offered and not done
    bool m_resyncPending = false;
    bool m_toldRefused = false;
};

} // namespace pdeprint
