#include "tests/support/PrivateScheduler.h"

#include "tests/support/TestSupport.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QThread>

#include <cups/cups.h>

#include <arpa/inet.h>
#include <grp.h>
#include <pwd.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace pdetest {

int freeLoopbackPort()
{
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof(address);
    const bool bound = ::bind(fd, reinterpret_cast<sockaddr *>(&address), length) == 0
        && ::getsockname(fd, reinterpret_cast<sockaddr *>(&address), &length) == 0;
    ::close(fd);
    return bound ? ntohs(address.sin_port) : 0;
}

QString PrivateScheduler::start(const SchedulerOptions &options)
{
    m_port = freeLoopbackPort();
    if (!m_root.isValid() || m_port == 0)
        return QStringLiteral("no temporary folder or free port");
    for (const char *folder : { "etc/ppd", "spool/tmp", "cache", "state", "log", "bin/backend", "records" })
        QDir().mkpath(m_root.filePath(folder));
    // Filters and notifiers are the system's; the backend folder is ours.
    for (const char *folder : { "cgi-bin", "daemon", "driver", "filter", "monitor", "notifier" })
        QFile::link(QStringLiteral("/usr/lib/cups/") + folder, m_root.filePath(QStringLiteral("bin/") + folder));
    // ipp, for queues of a printer of the test's own.
    QFile::link(QStringLiteral("/usr/lib/cups/backend/ipp"), m_root.filePath("bin/backend/ipp"));
    const QString backend = m_root.filePath("bin/backend/record");
    if (!QFile::copy(QStringLiteral(PDE_SOURCE_DIR "/tests/support/record-backend.sh"), backend))
        return QStringLiteral("cannot install the recording backend");
    // Root hands backends to lp, which must reach the spool and the records.
    ::chmod(QFile::encodeName(backend).constData(), 0755);
    ::chmod(QFile::encodeName(m_root.path()).constData(), 0755);
    ::chmod(QFile::encodeName(m_root.filePath("records")).constData(), 01777);

    const bool asRoot = ::geteuid() == 0;
    const passwd *user = ::getpwuid(::geteuid());
    const group *userGroup = ::getgrgid(::getegid());
    const QString userName = QString::fromLocal8Bit(asRoot ? "lp" : user ? user->pw_name : "nobody");
    const QString groupName = QString::fromLocal8Bit(asRoot ? "lp" : userGroup ? userGroup->gr_name : "nogroup");
    // One template a file; cupsd takes an empty line for nothing.
    const QString conf = QStringLiteral("LogLevel info\nListen 127.0.0.1:%1\nListen %2/cups.sock\nServerName 127.0.0.1\n"
                                        "Browsing No\nWebInterface No\nDefaultAuthType None\nJobRetryLimit 0\n"
                                        "<Location />\n  Order allow,deny\n  Allow all\n</Location>\n<Policy default>\n"
                                        "  <Limit All>\n    Order deny,allow\n  </Limit>\n</Policy>\n<Policy private>\n%3\n"
                                        "  <Limit All>\n    Order deny,allow\n  </Limit>\n</Policy>\n%4\n")
                             .arg(m_port)
                             .arg(m_root.path(), options.policyLines.join('\n'), options.extraLines.join('\n'));
    const QString files = QStringLiteral("ServerRoot %1/etc\nServerBin %1/bin\nRequestRoot %1/spool\nTempDir %1/spool/tmp\n"
                                         "CacheDir %1/cache\nStateDir %1/state\nErrorLog %1/log/error_log\n"
                                         "AccessLog %1/log/access_log\nPageLog %1/log/page_log\nFileDevice Yes\n"
                                         "User %2\nGroup %3\nSystemGroup %4\nSandboxing Relaxed\n%5\n")
                              .arg(m_root.path(), userName, groupName, asRoot ? QStringLiteral("root") : groupName,
                                   options.filesLines.join('\n'));
    if (!writeFile(m_root.filePath("etc/cupsd.conf"), conf.toUtf8()) || !writeFile(m_root.filePath("etc/cups-files.conf"), files.toUtf8()))
        return QStringLiteral("cannot write the scheduler's configuration");

    m_server = QStringLiteral("127.0.0.1:%1").arg(m_port);
    qputenv("CUPS_SERVER", m_server.toUtf8()); // for the processes the test starts
    cupsSetServer(m_server.toUtf8().constData());
    if (QString error = launch(); !error.isEmpty())
        return error;
    for (const QueueSetup &queue : options.queues) {
        QStringList lpadmin { "-p", queue.name, "-E", "-v",
                              queue.deviceUri.isEmpty() ? "record:" + m_root.filePath("records") : queue.deviceUri };
        if (queue.ppd == "everywhere")
            lpadmin << "-m" << "everywhere";
        else if (queue.ppd != "-")
            lpadmin << "-P" << (queue.ppd.isEmpty() ? samplePpdPath() : queue.ppd);
        if (queue.holdsJobs)
            lpadmin << "-o" << "job-hold-until-default=indefinite";
        if (queue.privatePolicy)
            lpadmin << "-o" << "printer-op-policy=private";
        if (QProcess::execute(QStringLiteral("/usr/sbin/lpadmin"), lpadmin) != 0) // its errors go to the test's
            return "lpadmin failed:\n" + log();
        // cupsd makes a driverless queue's PPD in a thread of its own; a job or
        // change that meets that thread half done is refused.
        const QString available = QStringLiteral("Printer \"%1\" is now available.").arg(queue.name);
        if (queue.ppd == "everywhere" && !waitUntil([&] { return log().contains(available); }))
            return "no PPD made for " + queue.name + ":\n" + log();
        const QString ppd = m_root.filePath("etc/ppd/" + queue.name + ".ppd");
        if (!queue.servedPpd.isEmpty() && !(QFile::remove(ppd) && QFile::copy(queue.servedPpd, ppd)))
            return "cannot replace " + ppd;
    }
    return {};
}

QString PrivateScheduler::launch()
{
    m_cupsd = std::make_unique<QProcess>();
    m_cupsd->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    const bool up = startServer(*m_cupsd, QStringLiteral("/usr/sbin/cupsd"),
                                { "-f", "-c", m_root.filePath("etc/cupsd.conf"), "-s", m_root.filePath("etc/cups-files.conf") },
                                m_port);
    if (!up)
        return QStringLiteral("cupsd did not come up on %1:\n%2").arg(m_server, log());
    return {};
}

void PrivateScheduler::stop()
{
    if (m_cupsd) {
        m_cupsd->terminate();
        m_cupsd->waitForFinished(20000);
    }
    m_cupsd.reset(); // kills it if it did not stop
}

QString PrivateScheduler::recordedOptions(int jobId) const
{
    return QString::fromUtf8(readFile(m_root.filePath(QStringLiteral("records/%1").arg(jobId)))).trimmed();
}

QMap<QString, QString> PrivateScheduler::received(int jobId) const
{
    waitUntil([&] { return !recordedOptions(jobId).isEmpty(); });
    return parseOptions(recordedOptions(jobId));
}

QString PrivateScheduler::log() const
{
    return QString::fromUtf8(readFile(m_root.filePath("log/error_log")).right(4000));
}

QString PrivateScheduler::pageLog() const
{
    return QString::fromUtf8(readFile(m_root.filePath("log/page_log")));
}

int PrivateScheduler::accessLogLines() const
{
    return int(readFile(m_root.filePath("log/access_log")).count('\n'));
}

SchedulerEnvironment *SchedulerEnvironment::add(SchedulerOptions options)
{
    SchedulerTest::environment = new SchedulerEnvironment(std::move(options));
    ::testing::AddGlobalTestEnvironment(SchedulerTest::environment);
    return SchedulerTest::environment;
}

bool startServer(QProcess &process, const QString &program, const QStringList &arguments, int port)
{
    process.setStandardInputFile(QProcess::nullDevice());
    // Dies with the test process, should that go first.
    process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
    process.start(program, arguments);
    return process.waitForStarted(10000) && waitUntil([&] {
        if (process.state() != QProcess::Running)
            return true;
        http_t *http = httpConnect2("127.0.0.1", port, nullptr, AF_INET, HTTP_ENCRYPTION_NEVER, 1, 200, nullptr);
        httpClose(http);
        return http != nullptr;
    }) && process.state() == QProcess::Running;
}

QStringList shippedPolicyLines()
{
    const QByteArray text = readFile(QStringLiteral(PDE_SOURCE_DIR "/examples/billing-codes-private.policy"));
    return QString::fromUtf8(text).split(QLatin1Char('\n')).filter(QRegularExpression("^(?!#)\\s*\\S"));
}

bool waitUntil(const std::function<bool()> &done, int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    while (!done()) {
        if (timer.elapsed() > timeoutMs)
            return done();
        QThread::msleep(20);
    }
    return true;
}

QMap<QString, QString> parseOptions(const QString &options)
{
    cups_option_t *parsed = nullptr;
    const int count = cupsParseOptions(options.toUtf8().constData(), 0, &parsed);
    QMap<QString, QString> map;
    for (int i = 0; i < count; ++i)
        map.insert(QString::fromUtf8(parsed[i].name), QString::fromUtf8(parsed[i].value));
    cupsFreeOptions(count, parsed);
    return map;
}

} // namespace pdetest
