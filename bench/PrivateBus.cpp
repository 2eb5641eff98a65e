#include "bench/PrivateBus.h"

#include "tests/support/PrivateScheduler.h"

#include <QFile>
#include <QFileInfo>

#include <signal.h>
#include <sys/prctl.h>
#include <sys/stat.h>

PrivateBus::~PrivateBus()
{
    if (!m_daemon)
        return;
    m_daemon->terminate();
    m_daemon->waitForFinished(10000);
}

QString PrivateBus::address() const
{
    return QStringLiteral("unix:path=") + m_root.filePath("bus.sock");
}

QString PrivateBus::start()
{
    QFile config(m_root.filePath("bus.conf"));
    if (!m_root.isValid() || !config.open(QIODevice::WriteOnly))
        return QStringLiteral("cannot write the bus configuration");
    config.write(QStringLiteral("<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\"\n"
                                " \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
                                "<busconfig>\n  <type>system</type>\n  <listen>unix:path=%1</listen>\n"
                                "  <auth>EXTERNAL</auth>\n  <policy context=\"default\">\n"
                                "    <allow user=\"*\"/>\n    <allow send_type=\"signal\"/>\n"
                                "    <allow send_type=\"method_call\"/>\n    <allow receive_type=\"signal\"/>\n"
                                "    <allow send_requested_reply=\"true\"/>\n    <allow receive_requested_reply=\"true\"/>\n"
                                "  </policy>\n</busconfig>\n")
                     .arg(m_root.filePath("bus.sock"))
                     .toUtf8());
    config.close();
    ::chmod(QFile::encodeName(m_root.path()).constData(), 0755);

    m_daemon = std::make_unique<QProcess>();
    m_daemon->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_daemon->setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
    m_daemon->start(QStringLiteral("dbus-daemon"), { "--nofork", "--config-file=" + config.fileName() });
    if (!m_daemon->waitForStarted(10000))
        return QStringLiteral("dbus-daemon did not start");
    if (!pdetest::waitUntil([this] { return QFileInfo::exists(m_root.filePath("bus.sock")); }, 10000))
        return QStringLiteral("dbus-daemon made no socket");
    return {};
}
