#include "host/agent/cups/JobEventWatcher.h"

#include "host/agent/cups/IppPtr.h"

#include <QRandomGenerator>

namespace pdeprint {

namespace {

constexpr char kServerUri[] = "ipp://localhost/";
// How long an agent refused a subscription waits before asking again, at
// least; up to twice that.
constexpr int kSubscribeAgainSeconds = 60;

bool failed(const IppPtr &response)
{
    return !response || cupsLastError() > IPP_STATUS_OK_CONFLICTING;
}

// The server is away or failing, rather than refusing the request.
bool serverAway()
{
    return cupsLastError() >= IPP_STATUS_ERROR_INTERNAL;
}

QString lastError(const char *what)
{
    return QStringLiteral("%1: %2").arg(QLatin1String(what), QString::fromUtf8(cupsLastErrorString()));
}

ipp_t *newRequest(ipp_op_t operation)
{
    ipp_t *request = ippNewRequest(operation);
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_URI, "printer-uri", nullptr, kServerUri);
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_NAME, "requesting-user-name", nullptr, cupsUser());
    return request;
}

} // namespace

JobEventWatcher::JobEventWatcher(int leaseSeconds) : m_lease(leaseSeconds) { }

void JobEventWatcher::cancel(http_t *http)
{
    cancel(http, m_subscription);
    cancel(http, m_busSubscription);
    m_subscription = m_busSubscription = 0;
}

void JobEventWatcher::cancel(http_t *http, int subscription)
{
    if (!http || subscription <= 0)
        return;
    ipp_t *request = newRequest(IPP_OP_CANCEL_SUBSCRIPTION);
    ippAddInteger(request, IPP_TAG_OPERATION, IPP_TAG_INTEGER, "notify-subscription-id", subscription);
    IppPtr response(send(http, request));
}

ipp_t *JobEventWatcher::send(http_t *http, ipp_t *request)
{
    return cupsDoRequest(http, request, "/");
}

// A subscription to the jobs' events on every queue, delivered the way the
// one attribute given says; its id, 0 when the server refuses it.
int JobEventWatcher::createSubscription(http_t *http, ipp_tag_t tag, const char *name, const char *value)
{
    ipp_t *request = newRequest(IPP_OP_CREATE_PRINTER_SUBSCRIPTIONS);
    ippAddString(request, IPP_TAG_SUBSCRIPTION, tag, name, nullptr, value);
    static const char *const events[] = { "job-created", "job-state-changed" };
    ippAddStrings(request, IPP_TAG_SUBSCRIPTION, IPP_TAG_KEYWORD, "notify-events", 2, nullptr, events);
    ippAddInteger(request, IPP_TAG_SUBSCRIPTION, IPP_TAG_INTEGER, "notify-lease-duration", m_lease);
    const IppPtr response(send(http, request));
    ipp_attribute_t *id = response ? ippFindAttribute(response.get(), "notify-subscription-id", IPP_TAG_INTEGER) : nullptr;
    return failed(response) || !id ? 0 : ippGetInteger(id, 0);
}

bool JobEventWatcher::subscribe(http_t *http, QString *error)
{
    m_subscription = createSubscription(http, IPP_TAG_KEYWORD, "notify-pull-method", "ippget");
    if (m_subscription <= 0) {
        if (serverAway()) {
            *error = lastError("cannot subscribe to job events");
            return false;
        }
        // Refused (MaxSubscriptions, say): others may leave and free a place.
        // Spread over agents refused together.
        m_subscribeAgainAt =
            time(nullptr) + kSubscribeAgainSeconds + QRandomGenerator::global()->bounded(kSubscribeAgainSeconds);
        return false;
    }
    m_nextSequence = 1;
    m_renewAt = time(nullptr) + m_lease / 2;
    if (m_wantBusNotifier)
        subscribeBusNotifier(http);
    return true;
}

// Made with each pull subscription, whose renewal it shares.
void JobEventWatcher::subscribeBusNotifier(http_t *http)
{
    cancel(http, m_busSubscription); // the old one, if the scheduler still has it
    m_busSubscription = createSubscription(http, IPP_TAG_URI, "notify-recipient-uri", "dbus://");
}

bool JobEventWatcher::renew(http_t *http, int subscription)
{
    ipp_t *request = newRequest(IPP_OP_RENEW_SUBSCRIPTION);
    ippAddInteger(request, IPP_TAG_OPERATION, IPP_TAG_INTEGER, "notify-subscription-id", subscription);
    ippAddInteger(request, IPP_TAG_SUBSCRIPTION, IPP_TAG_INTEGER, "notify-lease-duration", m_lease);
    const IppPtr response(send(http, request));
    if (failed(response))
        return false;
    m_renewAt = time(nullptr) + m_lease / 2;
    return true;
}

JobEventWatcher::Poll JobEventWatcher::poll(http_t *http)
{
    Poll result;
    if (m_subscription > 0 && time(nullptr) >= m_renewAt) {
        if (!renew(http, m_subscription)) {
            if (serverAway()) { // renewed when it is back
                result.error = lastError("cannot renew the subscription to job events");
                return result;
            }
            m_subscription = 0; // expired or forgotten: new ones below
        } else if (m_busSubscription > 0 && !renew(http, m_busSubscription))
            subscribeBusNotifier(http);
    }
    if (m_subscription <= 0) {
        result.resync = true;
        if (time(nullptr) < m_subscribeAgainAt || !subscribe(http, &result.error)) {
            result.subscribed = false;
            return result;
        }
    }

    ipp_t *request = newRequest(IPP_OP_GET_NOTIFICATIONS);
    ippAddInteger(request, IPP_TAG_OPERATION, IPP_TAG_INTEGER, "notify-subscription-ids", m_subscription);
    ippAddInteger(request, IPP_TAG_OPERATION, IPP_TAG_INTEGER, "notify-sequence-numbers", m_nextSequence);
    const IppPtr response(send(http, request));
    if (cupsLastError() == IPP_STATUS_ERROR_NOT_FOUND) {
        m_subscription = 0; // the scheduler forgot it; subscribe again next time
        result.resync = true;
        return result;
    }
    if (failed(response)) {
        result.error = lastError("cannot fetch job events");
        return result;
    }

    const int expected = m_nextSequence;
    JobEvent event;
    int sequence = 0;
    int first = 0;
    auto flush = [&] {
        if (first == 0 && sequence > 0)
            first = sequence;
        if (sequence >= m_nextSequence && event.jobId > 0)
            result.events << event;
        if (sequence >= m_nextSequence)
            m_nextSequence = sequence + 1;
        event = JobEvent();
        sequence = 0;
    };
    for (ipp_attribute_t *attribute = ippFirstAttribute(response.get()); attribute;
         attribute = ippNextAttribute(response.get())) {
        const char *name = ippGetName(attribute);
        if (ippGetGroupTag(attribute) != IPP_TAG_EVENT_NOTIFICATION || !name) {
            flush();
            continue;
        }
        const ipp_tag_t tag = ippGetValueTag(attribute);
        if (!strcmp(name, "notify-sequence-number") && tag == IPP_TAG_INTEGER)
            sequence = ippGetInteger(attribute, 0);
        else if (!strcmp(name, "notify-job-id") && tag == IPP_TAG_INTEGER)
            event.jobId = ippGetInteger(attribute, 0);
        else if (!strcmp(name, "job-state") && tag == IPP_TAG_ENUM)
            event.state = ipp_jstate_t(ippGetInteger(attribute, 0));
        else if (!strcmp(name, "printer-name") && (tag == IPP_TAG_NAME || tag == IPP_TAG_NAMELANG))
            event.queue = QString::fromUtf8(ippGetString(attribute, 0, nullptr));
    }
    flush();
    // The scheduler keeps a bounded number of events a subscription and drops
    // the oldest: a burst between two polls leaves a gap.
    if (first > expected)
        result.resync = true;
    return result;
}

} // namespace pdeprint
