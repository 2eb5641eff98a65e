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
// ends and made again when the scheduler lost it or the connection was new.
// Each poll is one Get-Notifications request on a connection of its own.
class JobEventWatcher
{
public:
    explicit JobEventWatcher(int leaseSeconds = 600);
    ~JobEventWatcher(); // cancels the subscription
    JobEventWatcher(const JobEventWatcher &) = delete;
    JobEventWatcher &operator=(const JobEventWatcher &) = delete;

    struct Poll
    {
        QList<JobEvent> events;
        // Events may have been missed (first poll, new subscription, new
        // connection): whoever watches must look at the held jobs again.
        bool resync = false;
        QString error; // set when the server could not be asked; try again later
    };
    Poll poll();

    // Also keeps a subscription whose recipient is dbus://: the scheduler's
    // notifier then signals each event on the system bus. Optional: a
    // scheduler without that notifier refuses it and the polls go on.
    void setBusNotifier(bool wanted) { m_wantBusNotifier = wanted; }
    bool busNotifierSubscribed() const { return m_busSubscription > 0; }

    int subscriptionId() const { return m_subscription; }
    // Requests sent to the server so far.
    qint64 requestCount() const { return m_requests; }

private:
    bool connect(QString *error);
    void disconnect();
    ipp_t *send(ipp_t *request);
    bool subscribe(QString *error);
    int createSubscription(ipp_tag_t tag, const char *name, const char *value);
    bool renew(int subscription);
    void subscribeBusNotifier();
    void cancel(int subscription);
    int localPort() const;

    const int m_lease;
    http_t *m_http = nullptr;
    int m_port = 0;
    int m_subscription = 0;
    bool m_wantBusNotifier = false;
    int m_busSubscription = 0;
    int m_nextSequence = 1;
    time_t m_renewAt = 0;
    qint64 m_requests = 0;
};

} // namespace pdeprint
