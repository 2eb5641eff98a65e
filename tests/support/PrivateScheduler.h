#pragma once

#include <QMap>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

namespace pdetest {

struct QueueSetup
{
    QString name;
    bool holdsJobs = false; // job-hold-until-default=indefinite
    QString ppd;            // empty: the sample PPD; "-": none, a queue no panel serves;
                            // "everywhere": made from what the printer at deviceUri reports
    bool privatePolicy = false; // under the policy "private" (SchedulerOptions::policyLines)
    QString deviceUri = {};     // empty: the recording backend
    // Written over the queue's PPD once made: what the server then serves,
    // even a PPD that lpadmin would refuse.
    QString servedPpd = {};
};

struct SchedulerOptions
{
    std::vector<QueueSetup> queues;
    // Lines of a second policy, "private", before its <Limit All>.
    QStringList policyLines = {};
    // Lines added to cupsd.conf after everything else.
    QStringList extraLines = {};
    // Lines added to cups-files.conf (SetEnv for notifiers, say).
    QStringList filesLines = {};
};

// The lines an administrator copies from the shipped policy file.
QStringList shippedPolicyLines();

// A cupsd of the test's own on a free loopback port, every file in a
// temporary folder. Queues print to a recording backend: each job that runs
// leaves its options argument in records/<job id>. Sets CUPS_SERVER for the
// processes the test starts and for libcups in the test itself.
class PrivateScheduler
{
public:
    PrivateScheduler() = default;
    ~PrivateScheduler() { stop(); }
    PrivateScheduler(const PrivateScheduler &) = delete;
    PrivateScheduler &operator=(const PrivateScheduler &) = delete;

    // Empty on success, else what went wrong with the scheduler's log.
    QString start(const SchedulerOptions &options);
    // Stops and starts the same scheduler: queues, jobs and subscriptions stay.
    QString restart()
    {
        stop();
        return launch();
    }
    void stop();

    QString server() const { return m_server; }
    // The scheduler's local socket, beside its loopback port.
    QString socketPath() const { return m_root.filePath("cups.sock"); }
    qint64 pid() const { return m_cupsd ? m_cupsd->processId() : 0; }
    // The options argument the backend received for the job; empty until it ran.
    QString recordedOptions(int jobId) const;
    // Those options parsed as a backend parses them, once the job ran (waits for it).
    QMap<QString, QString> received(int jobId) const;
    QString log() const;
    QString pageLog() const;
    // Lines in the access log: requests served, with `AccessLogLevel all`.
    int accessLogLines() const;

private:
    QString launch();

    QTemporaryDir m_root;
    std::unique_ptr<QProcess> m_cupsd;
    QString m_server;
    int m_port = 0;
};

// One scheduler for a whole test program, stopped after its last test
// however the tests went.
class SchedulerEnvironment : public ::testing::Environment
{
public:
    explicit SchedulerEnvironment(SchedulerOptions options) : m_options(std::move(options)) { }
    void SetUp() override { error = scheduler.start(m_options); }
    void TearDown() override { scheduler.stop(); }
    // Registers the program's scheduler, the one SchedulerTest's tests use.
    static SchedulerEnvironment *add(SchedulerOptions options);

    PrivateScheduler scheduler;
    QString error; // why it did not come up

private:
    SchedulerOptions m_options;
};

// A test on the program's scheduler, with a preferences folder of its own so
// that codes kept in one test stay out of the next.
class SchedulerTest : public ::testing::Test
{
public:
    static inline SchedulerEnvironment *environment = nullptr;

protected:
    void SetUp() override
    {
        ASSERT_TRUE(environment && environment->error.isEmpty()) << qPrintable(environment->error);
        qputenv("XDG_CONFIG_HOME", config.path().toUtf8());
    }
    PrivateScheduler &scheduler() { return environment->scheduler; }
    QTemporaryDir config;
};

// A TCP port on loopback that nobody listens on now.
int freeLoopbackPort();
// Starts a server that dies with the test process and waits until it answers
// on that port of 127.0.0.1; false when it stopped or never answered.
bool startServer(QProcess &process, const QString &program, const QStringList &arguments, int port);

// Polls `done` every 20 ms until it holds or `timeoutMs` passed; answers its last value.
bool waitUntil(const std::function<bool()> &done, int timeoutMs = 20000);

// Options parsed the way a backend parses its options argument.
QMap<QString, QString> parseOptions(const QString &options);

} // namespace pdetest
