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
// Without a subscription each poll lists the user's jobs: a heavier request,
// so less often.
constexpr int kListingMilliseconds = 5000;
// While the server is away: from about a second up to about half a minute.
constexpr int kFirstRetryMilliseconds = 1000;
constexpr int kRetryCeilingMilliseconds = 30000;

} // namespace

HeldJobAgent::HeldJobAgent(CupsConnection &cups, ServedQueues &queues, HeldJobHandler &handler, QTextStream &err,
                           int pollMilliseconds)
    : m_cups(cups), m_queues(queues), m_handler(handler), m_err(err),
      m_backoff(kFirstRetryMilliseconds, kRetryCeilingMilliseconds), m_pollMilliseconds(pollMilliseconds)
{
    m_timer.setSingleShot(true);
    QObject::connect(&m_timer, &QTimer::timeout, this, &HeldJobAgent::pollNow);
    m_wakeTimer.setSingleShot(true);
    QObject::connect(&m_wakeTimer, &QTimer::timeout, this, &HeldJobAgent::pollNow);
    QObject::connect(&m_bus, &SchedulerBusSignals::signalled, this, &HeldJobAgent::wake);
}

HeldJobAgent::~HeldJobAgent()
{
    QString error;
    if (m_watcher.subscribed() && m_cups.connect(&error))
        m_watcher.cancel(m_cups.http());
}

void HeldJobAgent::start()
{
    m_watcher.setBusNotifier(m_bus.listen());
    pollNow();
}

void HeldJobAgent::pollNow()
{
    m_wakeTimer.stop();
    m_sinceTick.start();
    QString error;
    if (tick(&error)) {
        m_failedDelay = 0;
        m_backoff.reset();
    } else {
        if (m_failedDelay == 0) {
            m_err << "pdeprint: waiting for the CUPS server at " << cupsServerName();
            if (!error.isEmpty())
                m_err << " (" << error << ")";
            m_err << Qt::endl;
        }
        m_failedDelay = m_backoff.nextMilliseconds();
        m_resyncPending = true; // whatever happened meanwhile is looked at when it answers
    }
    m_timer.start(nextPollMilliseconds()); // the safety net counts from the last fetch
}

int HeldJobAgent::nextPollMilliseconds() const
{
    if (m_failedDelay > 0)
        return m_failedDelay;
    if (!m_subscribed)
        return kListingMilliseconds;
    return m_busProven ? std::max(m_pollMilliseconds, kSafetyNetMilliseconds) : m_pollMilliseconds;
}

void HeldJobAgent::wake()
{
    // Signals of others' subscriptions prove nothing about ours.
    if (m_watcher.busNotifierSubscribed() && !m_busProven) {
        m_busProven = true;
        if (m_failedDelay == 0)
            m_timer.start(nextPollMilliseconds());
    }
    if (!m_wakeTimer.isActive() && m_failedDelay == 0)
        m_wakeTimer.start(int(std::max<qint64>(0, kWakeGapMilliseconds - m_sinceTick.elapsed())));
}

// One poll on a connection of its own, an empty error when none could be made.
bool HeldJobAgent::tick(QString *error)
{
    QString unreachable;
    if (!m_cups.connect(&unreachable))
        return false;
    const bool ok = exchange(error);
    m_cups.hangUp();
    return ok;
}

bool HeldJobAgent::exchange(QString *error)
{
    JobEventWatcher::Poll poll = m_watcher.poll(m_cups.http());
    if (!poll.error.isEmpty()) {
        *error = poll.error;
        return false;
    }
    m_subscribed = poll.subscribed;
    if (!m_subscribed && !m_toldRefused) {
        m_toldRefused = true;
        m_err << "pdeprint: the CUPS server at " << cupsServerName()
              << " refused a subscription to job events; listing held jobs every " << kListingMilliseconds / 1000
              << " s instead" << Qt::endl;
    }
    m_resyncPending = m_resyncPending || poll.resync;
    if (m_resyncPending) {
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
