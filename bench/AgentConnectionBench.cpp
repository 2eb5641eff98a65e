// What an agent's poll costs the scheduler and the agent, for each way of
// holding the connection: one connection kept open per agent, or one opened
// for each poll and closed after it; over the local socket, TCP, and TCP
// with TLS. N simulated agents each hold a pull subscription and poll it
// with Get-Notifications once a second, spread evenly over the second, as
// N real agents would.
//
//   pdebench_agent_connection [--agents N] [--seconds S]
//
// A driver, not a Google Benchmark: CPU of the scheduler process from
// /proc/<pid>/schedstat over the run, the client's own CPU per poll, and the
// poll's wall time (connection included) as percentiles.

#include "bench/ProcessFigures.h"
#include "tests/support/PrivateScheduler.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>

#include <cups/cups.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <vector>

namespace {

qint64 ownCpuNanoseconds()
{
    timespec now {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return qint64(now.tv_sec) * 1000000000 + now.tv_nsec;
}

struct Transport
{
    const char *name;
    QByteArray host;
    int port;
    http_encryption_t encryption;
};

http_t *connectTo(const Transport &transport)
{
    return httpConnect2(transport.host.constData(), transport.port, nullptr, AF_UNSPEC, transport.encryption, 1,
                        5000, nullptr);
}

ipp_t *request(ipp_op_t operation)
{
    ipp_t *request = ippNewRequest(operation);
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_URI, "printer-uri", nullptr, "ipp://localhost/");
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_NAME, "requesting-user-name", nullptr, cupsUser());
    return request;
}

int subscribe(http_t *http)
{
    ipp_t *create = request(IPP_OP_CREATE_PRINTER_SUBSCRIPTIONS);
    ippAddString(create, IPP_TAG_SUBSCRIPTION, IPP_TAG_KEYWORD, "notify-pull-method", nullptr, "ippget");
    static const char *const events[] = { "job-created", "job-state-changed" };
    ippAddStrings(create, IPP_TAG_SUBSCRIPTION, IPP_TAG_KEYWORD, "notify-events", 2, nullptr, events);
    ipp_t *response = cupsDoRequest(http, create, "/");
    ipp_attribute_t *id = response ? ippFindAttribute(response, "notify-subscription-id", IPP_TAG_INTEGER) : nullptr;
    const int subscription = id ? ippGetInteger(id, 0) : 0;
    ippDelete(response);
    return subscription;
}

bool getNotifications(http_t *http, int subscription)
{
    ipp_t *get = request(IPP_OP_GET_NOTIFICATIONS);
    ippAddInteger(get, IPP_TAG_OPERATION, IPP_TAG_INTEGER, "notify-subscription-ids", subscription);
    ippAddInteger(get, IPP_TAG_OPERATION, IPP_TAG_INTEGER, "notify-sequence-numbers", 1);
    ipp_t *response = cupsDoRequest(http, get, "/");
    ippDelete(response);
    return response && cupsLastError() <= IPP_STATUS_OK_CONFLICTING;
}

double percentile(std::vector<double> values, double p)
{
    if (values.empty())
        return 0;
    std::sort(values.begin(), values.end());
    return values[std::min(values.size() - 1, size_t(p * double(values.size())))];
}

void run(const pdetest::PrivateScheduler &scheduler, const Transport &transport, bool kept, int agents, int seconds)
{
    std::vector<http_t *> connections(size_t(agents), nullptr);
    std::vector<int> subscriptions(size_t(agents), 0);
    for (int i = 0; i < agents; ++i) {
        http_t *http = connectTo(transport);
        subscriptions[size_t(i)] = http ? subscribe(http) : 0;
        if (kept)
            connections[size_t(i)] = http;
        else
            httpClose(http);
    }
    std::vector<double> wallMs;
    int failed = 0;
    const qint64 serverBefore = cpuNanoseconds(scheduler.pid());
    const qint64 ownBefore = ownCpuNanoseconds();
    QElapsedTimer clock;
    clock.start();
    const qint64 slotNs = 1000000000LL / agents;
    for (qint64 poll = 0; poll < qint64(agents) * seconds; ++poll) {
        const qint64 due = poll * slotNs;
        if (const qint64 wait = due - clock.nsecsElapsed(); wait > 0)
            QThread::usleep(unsigned(wait / 1000));
        const size_t agent = size_t(poll % agents);
        const qint64 start = clock.nsecsElapsed();
        http_t *http = kept ? connections[agent] : connectTo(transport);
        if (!http || !getNotifications(http, subscriptions[agent]))
            ++failed;
        if (!kept)
            httpClose(http);
        wallMs.push_back(double(clock.nsecsElapsed() - start) / 1e6);
    }
    const double elapsed = double(clock.nsecsElapsed()) / 1e9;
    const double serverMs = double(cpuNanoseconds(scheduler.pid()) - serverBefore) / 1e6;
    const double ownUs = double(ownCpuNanoseconds() - ownBefore) / 1e3 / double(wallMs.size());
    std::printf("| %s | %s | %d | %.1f s | %.2f %% | %.0f µs | %.0f µs | %.2f / %.2f / %.2f ms | %d |\n", transport.name,
                kept ? "kept" : "per poll", agents, elapsed, serverMs / elapsed / 10.0,
                serverMs * 1000 / double(wallMs.size()), ownUs, percentile(wallMs, 0.5), percentile(wallMs, 0.9),
                percentile(wallMs, 0.99), failed);
    std::fflush(stdout);
    for (http_t *http : connections)
        httpClose(http);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const int agents = optionValue(application.arguments(), "--agents", 150);
    const int seconds = optionValue(application.arguments(), "--seconds", 20);
    QTemporaryDir keychain;
    pdetest::PrivateScheduler scheduler;
    // Room for every simulated agent's connection and subscription: the
    // figures are of the connections, not of the limits.
    const QString error = scheduler.start({ .queues = {},
                                            .extraLines = { "MaxClients 2000", "MaxSubscriptions 2000",
                                                            "MaxClientsPerHost 2000" },
                                            .filesLines = { "ServerKeychain " + keychain.path() } });
    if (!error.isEmpty()) {
        std::fprintf(stderr, "pdebench_agent_connection: %s\n", qPrintable(error));
        return 1;
    }
    const QByteArray port = scheduler.server().section(':', 1).toLatin1();
    const Transport transports[] = {
        { "local socket", scheduler.socketPath().toLocal8Bit(), 0, HTTP_ENCRYPTION_NEVER },
        { "TCP", "127.0.0.1", port.toInt(), HTTP_ENCRYPTION_NEVER },
        { "TCP + TLS", "localhost", port.toInt(), HTTP_ENCRYPTION_ALWAYS },
    };
    std::printf("| transport | connection | agents | run | scheduler CPU (of one core) | scheduler CPU a poll | "
                "client CPU a poll | poll wall: median / 90th / 99th | failed |\n|---|---|---|---|---|---|---|---|---|\n");
    for (const Transport &transport : transports) {
        for (bool kept : { true, false })
            run(scheduler, transport, kept, agents, seconds);
    }
    return 0;
}
