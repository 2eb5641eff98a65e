#include "tests/host/PrivateScheduler.h"

#include <QDir>
#include <QFile>
#include <QThread>

#include <cups/cups.h>

#include <arpa/inet.h>
#include <grp.h>
#include <netinet/in.h>
#include <pwd.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace hosttest {

namespace {

int freeLoopbackPort()
{
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof(address);
    int port = 0;
    if (::bind(fd, reinterpret_cast<sockaddr *>(&address), length) == 0
        && ::getsockname(fd, reinterpret_cast<sockaddr *>(&address), &length) == 0)
        port = ntohs(address.sin_port);
    ::close(fd);
    return port;
}

bool writeFile(const QString &path, const QString &text)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) == text.toUtf8().size();
}

} // namespace

PrivateScheduler::PrivateScheduler() = default;

PrivateScheduler::~PrivateScheduler()
{
    stop();
}

QString PrivateScheduler::server() const
{
    return QStringLiteral("127.0.0.1:%1").arg(m_port);
}

QString PrivateScheduler::log() const
{
    QFile file(m_root.filePath("log/error_log"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll().right(4000)) : QString();
}

bool PrivateScheduler::start(QString *error)
{
    m_port = freeLoopbackPort();
    if (!m_root.isValid() || m_port == 0) {
        *error = QStringLiteral("no temporary folder or free port");
        return false;
    }
    for (const char *folder : { "etc", "etc/ppd", "spool", "spool/tmp", "cache", "state", "log" })
        QDir().mkpath(m_root.filePath(folder));
    // Filters run as the scheduler's user: root hands them to lp, anyone else runs them as themselves.
    const bool root = ::geteuid() == 0;
    const passwd *user = ::getpwuid(::geteuid());
    const group *userGroup = ::getgrgid(::getegid());
    const QString userName = root ? QStringLiteral("lp") : QString::fromLocal8Bit(user ? user->pw_name : "nobody");
    const QString groupName = root ? QStringLiteral("lp") : QString::fromLocal8Bit(userGroup ? userGroup->gr_name : "nogroup");
    const QString systemGroup = root ? QStringLiteral("root") : groupName;
    // The scheduler as lp must reach the spool.
    QFile::setPermissions(m_root.path(), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner
                                             | QFileDevice::ReadOther | QFileDevice::ExeOther | QFileDevice::ReadGroup
                                             | QFileDevice::ExeGroup);

    const QString conf = QStringLiteral(
        "LogLevel info\n"
        "Listen 127.0.0.1:%1\n"
        "Listen %2/cups.sock\n"
        "ServerName 127.0.0.1\n"
        "Browsing No\n"
        "WebInterface No\n"
        "DefaultAuthType None\n"
        "JobRetryLimit 0\n"
        "<Location />\n  Order allow,deny\n  Allow all\n</Location>\n"
        "<Policy default>\n  <Limit All>\n    Order deny,allow\n  </Limit>\n</Policy>\n")
                             .arg(m_port)
                             .arg(m_root.path());
    const QString files = QStringLiteral(
        "ServerRoot %1/etc\n"
        "RequestRoot %1/spool\n"
        "TempDir %1/spool/tmp\n"
        "CacheDir %1/cache\n"
        "StateDir %1/state\n"
        "ErrorLog %1/log/error_log\n"
        "AccessLog %1/log/access_log\n"
        "PageLog %1/log/page_log\n"
        "FileDevice Yes\n"
        "User %2\n"
        "Group %3\n"
        "SystemGroup %4\n"
        "Sandboxing Relaxed\n")
                              .arg(m_root.path(), userName, groupName, systemGroup);
    if (!writeFile(m_root.filePath("cupsd.conf"), conf) || !writeFile(m_root.filePath("cups-files.conf"), files)) {
        *error = QStringLiteral("cannot write the scheduler's configuration");
        return false;
    }

    m_process = std::make_unique<QProcess>();
    m_process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process->setStandardInputFile(QProcess::nullDevice());
    m_process->setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
    m_process->start(QStringLiteral("/usr/sbin/cupsd"),
                     { "-f", "-c", m_root.filePath("cupsd.conf"), "-s", m_root.filePath("cups-files.conf") });
    if (!m_process->waitForStarted(5000)) {
        *error = QStringLiteral("cupsd did not start: %1").arg(m_process->errorString());
        return false;
    }
    for (int attempt = 0; attempt < 100; ++attempt) {
        if (m_process->state() != QProcess::Running)
            break;
        if (http_t *http = httpConnect2("127.0.0.1", m_port, nullptr, AF_INET, HTTP_ENCRYPTION_NEVER, 1, 200, nullptr)) {
            httpClose(http);
            return true;
        }
        QThread::msleep(100);
    }
    *error = QStringLiteral("cupsd did not come up on %1:\n%2").arg(server(), log());
    return false;
}

void PrivateScheduler::stop()
{
    if (!m_process || m_process->state() == QProcess::NotRunning)
        return;
    m_process->terminate();
    if (!m_process->waitForFinished(10000)) {
        m_process->kill();
        m_process->waitForFinished(5000);
    }
}

bool PrivateScheduler::addQueue(const QString &name, const QString &ppd, QString *error)
{
    QProcess lpadmin;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("CUPS_SERVER", server());
    lpadmin.setProcessEnvironment(environment);
    lpadmin.setStandardInputFile(QProcess::nullDevice());
    lpadmin.start("/usr/sbin/lpadmin", { "-p", name, "-E", "-v", "file:/dev/null", "-P", ppd });
    if (!lpadmin.waitForFinished(30000) || lpadmin.exitStatus() != QProcess::NormalExit || lpadmin.exitCode() != 0) {
        *error = QStringLiteral("lpadmin failed: %1%2\n%3")
                     .arg(QString::fromUtf8(lpadmin.readAllStandardError()), lpadmin.errorString(), log());
        return false;
    }
    return true;
}

QMap<QString, QString> PrivateScheduler::jobAttributes(int jobId)
{
    QMap<QString, QString> attributes;
    http_t *http = httpConnect2("127.0.0.1", m_port, nullptr, AF_INET, HTTP_ENCRYPTION_NEVER, 1, 5000, nullptr);
    if (!http)
        return attributes;
    char uri[HTTP_MAX_URI];
    httpAssembleURIf(HTTP_URI_CODING_ALL, uri, sizeof(uri), "ipp", nullptr, "127.0.0.1", m_port, "/jobs/%d", jobId);
    ipp_t *request = ippNewRequest(IPP_OP_GET_JOB_ATTRIBUTES);
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_URI, "job-uri", nullptr, uri);
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_NAME, "requesting-user-name", nullptr, cupsUser());
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes", nullptr, "all");
    ipp_t *response = cupsDoRequest(http, request, "/");
    if (response && ippGetStatusCode(response) <= IPP_STATUS_OK_CONFLICTING) {
        for (ipp_attribute_t *attribute = ippFirstAttribute(response); attribute;
             attribute = ippNextAttribute(response)) {
            if (!ippGetName(attribute) || ippGetGroupTag(attribute) != IPP_TAG_JOB)
                continue;
            char value[1024];
            ippAttributeString(attribute, value, sizeof(value));
            attributes.insert(QString::fromUtf8(ippGetName(attribute)), QString::fromUtf8(value));
        }
    }
    ippDelete(response);
    httpClose(http);
    return attributes;
}

QList<int> PrivateScheduler::jobIds()
{
    QList<int> ids;
    http_t *http = httpConnect2("127.0.0.1", m_port, nullptr, AF_INET, HTTP_ENCRYPTION_NEVER, 1, 5000, nullptr);
    if (!http)
        return ids;
    cups_job_t *jobs = nullptr;
    const int count = cupsGetJobs2(http, &jobs, nullptr, 0, CUPS_WHICHJOBS_ALL);
    for (int i = 0; i < count; ++i)
        ids << jobs[i].id;
    cupsFreeJobs(count, jobs);
    httpClose(http);
    return ids;
}

} // namespace hosttest
