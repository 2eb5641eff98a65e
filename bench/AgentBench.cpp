// The held-job agent, end to end against a private scheduler: from `lp`
// returning to the job released by a headless agent, beside `lp` itself; then
// what the agent costs while idle (CPU, requests to the server, memory).
// Run in turns in one process: the agent on its poll alone (no bus) over TCP,
// the local socket and TCP with TLS, and with a private system bus on which
// the scheduler's notifier wakes it.
//
//   pdebench_agent [--jobs N] [--idle-seconds S]
//
// A driver, not a Google Benchmark: one long scenario measured as percentiles.

#include "bench/ProcessFigures.h"
#include "bench/PrivateBus.h"
#include "tests/support/PrivateScheduler.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <cstdio>
#include <optional>

namespace {

constexpr char kQueue[] = "office";

struct Figures
{
    QList<double> lpMs;
    QList<double> releaseMs;
    int lost = 0;
    double idleCpuMs = 0;
    int idleRequests = 0;
    qint64 peakKb = 0;
    qint64 rssKb = 0;
};

qint64 statusKb(qint64 pid, const char *field)
{
    QFile status(QStringLiteral("/proc/%1/status").arg(pid));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(field))
            return line.mid(qstrlen(field)).trimmed().split(' ').value(0).toLongLong();
    }
    return -1;
}

// Reads the agent's output until it reports the job released.
bool waitForRelease(QProcess &agent, int jobId, int timeoutMs)
{
    const QByteArray wanted = "released job " + QByteArray::number(jobId) + ' ';
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < timeoutMs) {
        while (agent.canReadLine()) {
            if (agent.readLine().startsWith(wanted))
                return true;
        }
        agent.waitForReadyRead(int(std::max<qint64>(1, timeoutMs - timer.elapsed())));
    }
    return false;
}

int submit(const QString &file)
{
    QProcess lp;
    lp.start(QStringLiteral("lp"), { "-d", kQueue, "-o", "raw", file });
    lp.waitForFinished(30000);
    const QString out = QString::fromUtf8(lp.readAllStandardOutput());
    return QRegularExpression(QStringLiteral("request id is \\w+-(\\d+)")).match(out).captured(1).toInt();
}

enum class Transport { Tcp, LocalSocket, Tls };

std::optional<Figures> run(bool withBus, Transport transport, int jobs, int idleSeconds, const QString &document)
{
    PrivateBus bus;
    QTemporaryDir keychain; // the scheduler's self-signed certificate, for TLS
    pdetest::SchedulerOptions options { { { kQueue, true, {} } }, {}, { "AccessLogLevel all" },
                                        { "ServerKeychain " + keychain.path() } };
    if (withBus) {
        if (const QString error = bus.start(); !error.isEmpty()) {
            std::fprintf(stderr, "pdebench_agent: %s\n", qPrintable(error));
            return std::nullopt;
        }
        options.filesLines << "SetEnv DBUS_SYSTEM_BUS_ADDRESS " + bus.address();
    }
    pdetest::PrivateScheduler scheduler;
    if (const QString error = scheduler.start(options); !error.isEmpty()) {
        std::fprintf(stderr, "pdebench_agent: %s\n", qPrintable(error));
        return std::nullopt;
    }

    QTemporaryDir config;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_CONFIG_HOME", config.path());
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    environment.insert("DBUS_SYSTEM_BUS_ADDRESS", withBus ? bus.address() : QStringLiteral("unix:path=/nonexistent"));
    if (transport == Transport::LocalSocket)
        environment.insert("CUPS_SERVER", scheduler.socketPath());
    if (transport == Transport::Tls) {
        environment.insert("CUPS_SERVER", "localhost:" + scheduler.server().section(':', 1));
        environment.insert("CUPS_ENCRYPTION", "Required");
    }
    QProcess agent;
    agent.setProcessEnvironment(environment);
    agent.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    agent.setStandardInputFile(QProcess::nullDevice());
    agent.start(QStringLiteral(PDEBENCH_PDEPRINT),
                { "--agent", "--no-dialog", "--click", "mainCodeCB", "--type", "mainCodeText=1234" });
    if (!agent.waitForStarted(10000))
        return std::nullopt;

    Figures figures;
    // One job first, not counted: the agent is up and has read the queue once.
    if (!waitForRelease(agent, submit(document), 30000)) {
        std::fprintf(stderr, "pdebench_agent: the agent released no job\n%s\n", qPrintable(scheduler.log()));
        return std::nullopt;
    }
    QElapsedTimer timer;
    for (int i = 0; i < jobs; ++i) {
        // Submissions at random points of the agent's poll period.
        QThread::msleep(QRandomGenerator::global()->bounded(1000));
        timer.start();
        const int jobId = submit(document);
        figures.lpMs << timer.nsecsElapsed() / 1e6;
        timer.start();
        if (jobId > 0 && waitForRelease(agent, jobId, 10000))
            figures.releaseMs << timer.nsecsElapsed() / 1e6;
        else
            ++figures.lost;
    }

    QThread::msleep(2000); // the last job's events are behind it
    const qint64 pid = agent.processId();
    const qint64 cpuBefore = cpuNanoseconds(pid);
    const int requestsBefore = scheduler.accessLogLines();
    QThread::sleep(idleSeconds);
    figures.idleCpuMs = (cpuNanoseconds(pid) - cpuBefore) / 1e6;
    figures.idleRequests = scheduler.accessLogLines() - requestsBefore;
    figures.peakKb = statusKb(pid, "VmHWM:");
    figures.rssKb = statusKb(pid, "VmRSS:");
    agent.terminate();
    agent.waitForFinished(10000);
    return figures;
}

double percentile(QList<double> values, double fraction)
{
    if (values.isEmpty())
        return 0;
    std::sort(values.begin(), values.end());
    return values[std::min<qsizetype>(values.size() - 1, qsizetype(fraction * (values.size() - 1) + 0.5))];
}

void report(const char *mode, const Figures &f, int idleSeconds)
{
    std::printf("| %s | %.0f / %.0f ms | %.0f / %.0f / %.0f ms | %d | %.1f ms | %d (%.2f/s) | %lld / %lld KiB |\n", mode,
                percentile(f.lpMs, 0.5), percentile(f.lpMs, 1.0), percentile(f.releaseMs, 0.5),
                percentile(f.releaseMs, 0.9), percentile(f.releaseMs, 1.0), f.lost, f.idleCpuMs * 60 / idleSeconds,
                f.idleRequests, double(f.idleRequests) / idleSeconds, static_cast<long long>(f.peakKb),
                static_cast<long long>(f.rssKb));
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    int jobs = 50;
    int idleSeconds = 60;
    const QStringList arguments = application.arguments();
    for (qsizetype i = 1; i + 1 < arguments.size(); i += 2) {
        if (arguments[i] == "--jobs")
            jobs = arguments[i + 1].toInt();
        else if (arguments[i] == "--idle-seconds")
            idleSeconds = std::max(1, arguments[i + 1].toInt());
    }
    QTemporaryDir folder;
    const QString document = folder.filePath("job.txt");
    QFile file(document);
    if (!file.open(QIODevice::WriteOnly) || file.write("a job printed from another application\n") <= 0)
        return 1;
    file.close();

    std::printf("| agent | lp: median / worst | lp returned to released: median / 90th / worst | lost | idle CPU per "
                "minute | idle requests in %d s | memory: peak / idle RSS |\n|---|---|---|---|---|---|---|\n",
                idleSeconds);
    std::fflush(stdout);
    const struct { const char *name; bool withBus; Transport transport; } modes[] = {
        { "poll only (1 s), TCP", false, Transport::Tcp },
        { "poll only (1 s), local socket", false, Transport::LocalSocket },
        { "poll only (1 s), TCP + TLS", false, Transport::Tls },
        { "poll + bus wake-up, TCP", true, Transport::Tcp },
        { "poll + bus wake-up, local socket", true, Transport::LocalSocket },
    };
    for (const auto &mode : modes) {
        const std::optional<Figures> figures = run(mode.withBus, mode.transport, jobs, idleSeconds, document);
        if (!figures)
            return 1;
        report(mode.name, *figures, idleSeconds);
        std::fflush(stdout);
    }
    return 0;
}
