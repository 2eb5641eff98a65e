#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <cups/cups.h>

#include <ctime>

namespace pdeprint {

// A change to a job, as the scheduler announced it.
struct JobEvent
{
    int jobId = 0;
    QString queue;
    ipp_jstate_t state = IPP_JSTATE_PENDING;
};

// The scheduler's job events for every queue, pulled over IPP: one
// subscription (job-created, job-state-changed), renewed before its lease
// ends and made again when the scheduler lost it. The connection is the
// caller's, given to each call: the watcher keeps none open.
class JobEventWatcher
{
public:
    explicit JobEventWatcher(int leaseSeconds = 600);
    JobEventWatcher(const JobEventWatcher &) = delete;
    JobEventWatcher &operator=(const JobEventWatcher &) = delete;

    struct Poll
    {
        QList<JobEvent> events;
        // Events may have been missed (first poll, new subscription, a gap):
        // whoever watches must look at the held jobs again.
        bool resync = false;
        // No subscription: the server refused one (its MaxSubscriptions),
        // and asking again waits a while. Whoever watches must look at the
        // held jobs some other way.
        bool subscribed = true;
        QString error; // set when the server could not be asked; try again later
    };
    // One Get-Notifications, after a renewal or a subscription when due.
    Poll poll(http_t *http);
    // Cancels the subscriptions, as the agent leaves.
    void cancel(http_t *http);
    bool subscribed() const { return m_subscription > 0 || m_busSubscription > 0; }

    // Also keeps a subscription whose recipient is dbus://: the scheduler's
    // notifier then signals each event on the system bus. Optional: a
    // scheduler without that notifier refuses it and the polls go on.
    void setBusNotifier(bool wanted) { m_wantBusNotifier = wanted; }
    bool busNotifierSubscribed() const { return m_busSubscription > 0; }

private:
    ipp_t *send(http_t *http, ipp_t *request);
    bool subscribe(http_t *http, QString *error);
    int createSubscription(http_t *http, ipp_tag_t tag, const char *name, const char *value);
    bool renew(http_t *http, int subscription);
    void subscribeBusNotifier(http_t *http);
    void cancel(http_t *http, int subscription);

    const int m_lease;
    int m_subscription = 0;
    bool m_wantBusNotifier = false;
    int m_busSubscription = 0;
    int m_nextSequence = 1;
    time_t m_renewAt = 0;
    time_t m_subscribeAgainAt = 0;
};

} // namespace pdeprint
