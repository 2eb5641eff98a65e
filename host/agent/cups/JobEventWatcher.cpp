#include "host/agent/cups/JobEventWatcher.h"

#include "host/agent/cups/IppPtr.h"

#include <netinet/in.h>
#include <sys/socket.h>

namespace pdeprint {

namespace {

constexpr char kServerUri[] = "ipp://localhost/";

bool failed(const IppPtr &response)
{
    return !response || cupsLastError() > IPP_STATUS_OK_CONFLICTING;
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

JobEventWatcher::~JobEventWatcher()
{
    cancel(m_subscription);
    cancel(m_busSubscription);
    disconnect();
}

void JobEventWatcher::cancel(int subscription)
{
    if (!m_http || subscription <= 0)
        return;
    ipp_t *request = newRequest(IPP_OP_CANCEL_SUBSCRIPTION);
    ippAddInteger(request, IPP_TAG_OPERATION, IPP_TAG_INTEGER, "notify-subscription-id", subscription);
    IppPtr response(send(request));
}

bool JobEventWatcher::connect(QString *error)
{
    m_http = httpConnect2(cupsServer(), ippPort(), nullptr, AF_UNSPEC, cupsEncryption(), 1, 5000, nullptr);
    if (!m_http) {
        *error = QStringLiteral("cannot reach the CUPS server at %1").arg(QString::fromUtf8(cupsServer()));
        return false;
    }
    m_port = localPort();
    return true;
}

void JobEventWatcher::disconnect()
{
    httpClose(m_http);
    m_http = nullptr;
}

// The local end of the connection: libcups reconnects on its own when the
// server went away, and a new local port is how we notice.
int JobEventWatcher::localPort() const
{
    sockaddr_storage address {};
    socklen_t length = sizeof(address);
    if (!m_http || getsockname(httpGetFd(m_http), reinterpret_cast<sockaddr *>(&address), &length) != 0)
        return -1;
    if (address.ss_family == AF_INET)
        return ntohs(reinterpret_cast<sockaddr_in *>(&address)->sin_port);
    if (address.ss_family == AF_INET6)
        return ntohs(reinterpret_cast<sockaddr_in6 *>(&address)->sin6_port);
    return 0; // a local socket: no port, and no way to tell
}

ipp_t *JobEventWatcher::send(ipp_t *request)
{
    ++m_requests;
    return cupsDoRequest(m_http, request, "/");
}

// A subscription to the jobs' events on every queue, delivered the way the
// one attribute given says; its id, 0 when the server refuses it.
int JobEventWatcher::createSubscription(ipp_tag_t tag, const char *name, const char *value)
{
    ipp_t *request = newRequest(IPP_OP_CREATE_PRINTER_SUBSCRIPTIONS);
    ippAddString(request, IPP_TAG_SUBSCRIPTION, tag, name, nullptr, value);
    static const char *const events[] = { "job-created", "job-state-changed" };
    ippAddStrings(request, IPP_TAG_SUBSCRIPTION, IPP_TAG_KEYWORD, "notify-events", 2, nullptr, events);
    ippAddInteger(request, IPP_TAG_SUBSCRIPTION, IPP_TAG_INTEGER, "notify-lease-duration", m_lease);
    const IppPtr response(send(request));
    ipp_attribute_t *id = response ? ippFindAttribute(response.get(), "notify-subscription-id", IPP_TAG_INTEGER) : nullptr;
    return failed(response) || !id ? 0 : ippGetInteger(id, 0);
}

bool JobEventWatcher::subscribe(QString *error)
{
    m_subscription = createSubscription(IPP_TAG_KEYWORD, "notify-pull-method", "ippget");
    if (m_subscription <= 0) {
        *error = QStringLiteral("the CUPS server refused a subscription to job events: %1")
                     .arg(QString::fromUtf8(cupsLastErrorString()));
        return false;
    }
    m_nextSequence = 1;
    m_renewAt = time(nullptr) + m_lease / 2;
    if (m_wantBusNotifier)
        subscribeBusNotifier();
    return true;
}

// Made with each pull subscription, whose renewal it shares.
void JobEventWatcher::subscribeBusNotifier()
{
    cancel(m_busSubscription); // the old one, if the scheduler still has it
    m_busSubscription = createSubscription(IPP_TAG_URI, "notify-recipient-uri", "dbus://");
}

bool JobEventWatcher::renew(int subscription)
{
    ipp_t *request = newRequest(IPP_OP_RENEW_SUBSCRIPTION);
    ippAddInteger(request, IPP_TAG_OPERATION, IPP_TAG_INTEGER, "notify-subscription-id", subscription);
    ippAddInteger(request, IPP_TAG_SUBSCRIPTION, IPP_TAG_INTEGER, "notify-lease-duration", m_lease);
    const IppPtr response(send(request));
    if (failed(response))
        return false;
    m_renewAt = time(nullptr) + m_lease / 2;
    return true;
}

JobEventWatcher::Poll JobEventWatcher::poll()
{
    Poll result;
    if (!m_http) {
        if (!connect(&result.error))
            return result;
        result.resync = true;
    }
    if (m_subscription > 0 && time(nullptr) >= m_renewAt) {
        if (!renew(m_subscription))
            m_subscription = 0; // expired or forgotten: new ones below
        else if (m_busSubscription > 0 && !renew(m_busSubscription))
            subscribeBusNotifier();
    }
    if (m_subscription <= 0) {
        if (!subscribe(&result.error)) {
            disconnect();
            return result;
        }
        result.resync = true;
    }

    ipp_t *request = newRequest(IPP_OP_GET_NOTIFICATIONS);
    ippAddInteger(request, IPP_TAG_OPERATION, IPP_TAG_INTEGER, "notify-subscription-ids", m_subscription);
    ippAddInteger(request, IPP_TAG_OPERATION, IPP_TAG_INTEGER, "notify-sequence-numbers", m_nextSequence);
    const IppPtr response(send(request));
    if (localPort() != m_port) {
        m_port = localPort();
        result.resync = true; // a new connection: the scheduler may have restarted
    }
    if (cupsLastError() == IPP_STATUS_ERROR_NOT_FOUND) {
        m_subscription = 0; // the scheduler forgot it; subscribe again next time
        result.resync = true;
        return result;
    }
    if (failed(response)) {
        result.error = QStringLiteral("cannot fetch job events: %1").arg(QString::fromUtf8(cupsLastErrorString()));
        disconnect();
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
