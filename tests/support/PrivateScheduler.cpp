#include "tests/support/PrivateScheduler.h"

#include "tests/support/TestSupport.h"

#include <QDir>

#include <cups/cups.h>

#include <arpa/inet.h>
#include <grp.h>
#include <pwd.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace pdetest {

namespace {

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

} // namespace

void PrivateScheduler::TearDown()
{
    m_cupsd->terminate();
    m_cupsd->waitForFinished(10000);
    m_cupsd.reset(); // kills it if it did not stop
}

QString PrivateScheduler::log()
{
    QFile file(m_root.filePath("log/error_log"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll().right(4000)) : QString();
}

QString PrivateScheduler::start()
{
    m_cupsd = std::make_unique<QProcess>();
    const int port = freeLoopbackPort();
    if (!m_root.isValid() || port == 0)
        return QStringLiteral("no temporary folder or free port");
    for (const char *folder : { "etc/ppd", "spool/tmp", "cache", "state", "log" })
        QDir().mkpath(m_root.filePath(folder));
    auto write = [this](const char *name, const QString &text) {
        QFile file(m_root.filePath(name));
        return file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) > 0;
    };
    // Root hands filters to lp, which must reach the spool; anyone else runs them as themselves.
    const bool asRoot = ::geteuid() == 0;
    ::chmod(QFile::encodeName(m_root.path()).constData(), 0755);
    const passwd *user = ::getpwuid(::geteuid());
    const group *userGroup = ::getgrgid(::getegid());
    const QString userName = QString::fromLocal8Bit(asRoot ? "lp" : user ? user->pw_name : "nobody");
    const QString groupName = QString::fromLocal8Bit(asRoot ? "lp" : userGroup ? userGroup->gr_name : "nogroup");
    write("cupsd.conf", QStringLiteral("LogLevel info\nListen 127.0.0.1:%1\nListen %2/cups.sock\nServerName 127.0.0.1\n"
                                       "Browsing No\nWebInterface No\nDefaultAuthType None\nJobRetryLimit 0\n"
                                       "<Location />\n  Order allow,deny\n  Allow all\n</Location>\n"
                                       "<Policy default>\n  <Limit All>\n    Order deny,allow\n  </Limit>\n</Policy>\n")
                            .arg(port).arg(m_root.path()));
    write("cups-files.conf", QStringLiteral("ServerRoot %1/etc\nRequestRoot %1/spool\nTempDir %1/spool/tmp\n"
                                            "CacheDir %1/cache\nStateDir %1/state\nErrorLog %1/log/error_log\n"
                                            "AccessLog %1/log/access_log\nPageLog %1/log/page_log\nFileDevice Yes\n"
                                            "User %2\nGroup %3\nSystemGroup %4\nSandboxing Relaxed\n")
                                 .arg(m_root.path(), userName, groupName, asRoot ? QStringLiteral("root") : groupName));

    m_cupsd->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_cupsd->setStandardInputFile(QProcess::nullDevice());
    m_cupsd->setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
    m_cupsd->start("/usr/sbin/cupsd",
                   { "-f", "-c", m_root.filePath("cupsd.conf"), "-s", m_root.filePath("cups-files.conf") });
    server = QStringLiteral("127.0.0.1:%1").arg(port).toUtf8();
    qputenv("CUPS_SERVER", server); // for pdeprint and lpadmin
    cupsSetServer(server.constData());
    for (int attempt = 0; attempt < 100 && m_cupsd->waitForStarted(5000); ++attempt) {
        if (http_t *http = httpConnect2("127.0.0.1", port, nullptr, AF_INET, HTTP_ENCRYPTION_NEVER, 1, 200, nullptr)) {
            httpClose(http);
            for (const QString &queue : m_queues) {
                const QStringList lpadmin { "-p", queue, "-E", "-v", "file:/dev/null", "-P", samplePpdPath() };
                if (QProcess::execute("/usr/sbin/lpadmin", lpadmin) != 0)
                    return "lpadmin failed:\n" + log();
            }
            return QString();
        }
        ::usleep(100000);
    }
    return QStringLiteral("cupsd did not come up on %1:\n%2").arg(QString::fromUtf8(server), log());
}

} // namespace pdetest
