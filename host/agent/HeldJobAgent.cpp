#include "host/agent/HeldJobAgent.h"

#include "host/CupsQueue.h"
#include "host/agent/HeldJobHandler.h"
#include "host/agent/ServedQueues.h"
#include "host/agent/cups/JobRequests.h"

#include <QMap>

#include <algorithm>

namespace pdeprint {

namespace {

// Signals come in bursts (created, state, our own release): one fetch at
// most this often for them.
constexpr int kWakeGapMilliseconds = 100;
// Once a signal has shown that the notifier reaches us, the poll is only the
// safety net (a signal lost, the bus gone) and can be slower.
constexpr int kSafetyNetMilliseconds = 5000;

} // namespace

HeldJobAgent::HeldJobAgent(CupsConnection &cups, ServedQueues &queues, HeldJobHandler &handler, QTextStream &err,
                           int pollMilliseconds)
    : m_cups(cups), m_queues(queues), m_handler(handler), m_err(err)
{
    m_timer.setInterval(pollMilliseconds);
    QObject::connect(&m_timer, &QTimer::timeout, this, &HeldJobAgent::pollNow);
    m_wakeTimer.setSingleShot(true);
    QObject::connect(&m_wakeTimer, &QTimer::timeout, this, &HeldJobAgent::pollNow);
    QObject::connect(&m_bus, &SchedulerBusSignals::signalled, this, &HeldJobAgent::wake);
}

bool HeldJobAgent::start(QString *error)
{
    m_watcher.setBusNotifier(m_bus.listen());
    m_sinceTick.start();
    if (!tick(error))
        return false;
    m_timer.start();
    return true;
}

void HeldJobAgent::pollNow()
{
    m_wakeTimer.stop();
    m_timer.start(); // the safety net counts from the last fetch
    m_sinceTick.start();
    QString error;
    const bool ok = tick(&error);
    if (!ok && !m_failing)
        m_err << "pdeprint: warning: " << error << "; trying again" << Qt::endl;
    m_failing = !ok;
}

void HeldJobAgent::wake()
{
    // Signals of others' subscriptions prove nothing about ours.
    if (m_watcher.busNotifierSubscribed())
        m_timer.setInterval(std::max(m_timer.interval(), kSafetyNetMilliseconds));
    if (!m_wakeTimer.isActive())
        m_wakeTimer.start(int(std::max<qint64>(0, kWakeGapMilliseconds - m_sinceTick.elapsed())));
}

bool HeldJobAgent::tick(QString *error)
{
    JobEventWatcher::Poll poll = m_watcher.poll();
    m_resyncPending = m_resyncPending || poll.resync;
    if (m_resyncPending && poll.error.isEmpty()) {
        // Subscribed first, listed second: a job created in between is in both.
        m_queues.forget();
        const std::optional<QList<HeldJob>> held = fetchHeldJobs(m_cups.http(), error);
        if (!held)
            return false; // listed again next time
        m_resyncPending = false;
        for (const HeldJob &job : *held) {
            if (!m_seen.contains(job.id) && m_queues.serves(m_cups, job.queue))
                offer(job);
        }
    }
    // The last word about each job in this batch counts.
    QMap<int, JobEvent> latest;
    for (const JobEvent &event : poll.events)
        latest.insert(event.jobId, event);
    for (const JobEvent &event : latest) {
        if (event.state != IPP_JSTATE_HELD) {
            if (m_offered.remove(event.jobId))
                m_handler.withdrawn(event.jobId);
        } else if (!m_seen.contains(event.jobId) && m_queues.serves(m_cups, event.queue)) {
            consider(event.jobId);
        }
    }
    if (!poll.error.isEmpty()) {
        *error = poll.error;
        return false;
    }
    return true;
}

// Events do not name the owner: the job itself is asked.
void HeldJobAgent::consider(int jobId)
{
    QString error;
    const std::optional<HeldJob> job = fetchJob(m_cups.http(), jobId, &error);
    if (job && job->isHeld() && job->owner == QString::fromUtf8(cupsUser()))
        offer(*job);
}

void HeldJobAgent::offer(const HeldJob &job)
{
    m_seen.insert(job.id);
    m_offered.insert(job.id);
    m_handler.offer(job);
}

} // namespace pdeprint
