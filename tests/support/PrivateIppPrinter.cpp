#include "tests/support/PrivateIppPrinter.h"

#include "tests/support/PrivateScheduler.h"
#include "tests/support/TestSupport.h"

#include <QDir>
#include <QFileInfo>

#include <signal.h>
#include <sys/prctl.h>

namespace pdetest {

PrivateIppPrinter::PrivateIppPrinter(bool accounting) : m_port(freeLoopbackPort()), m_accounting(accounting) { }

QString PrivateIppPrinter::start()
{
    if (!m_root.isValid() || m_port == 0 || !QDir().mkpath(m_root.filePath("records")))
        return QStringLiteral("no temporary folder or free port");
    const QString bus = m_root.filePath("bus");
    m_bus = std::make_unique<QProcess>();
    m_bus->setStandardErrorFile(m_root.filePath("log"));
    m_bus->setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
    m_bus->start(QStringLiteral("dbus-daemon"), { "--session", "--nofork", "--address=unix:path=" + bus });
    if (!waitUntil([&] { return QFileInfo::exists(bus); }, 10000))
        return QStringLiteral("dbus-daemon did not start");
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DBUS_SYSTEM_BUS_ADDRESS"), "unix:path=" + bus);
    environment.insert(QStringLiteral("PDE_PRINTER_RECORDS"), m_root.filePath("records"));
    m_printer = std::make_unique<QProcess>();
    m_printer->setProcessEnvironment(environment);
    m_printer->setStandardOutputFile(m_root.filePath("log"), QIODevice::Append);
    m_printer->setStandardErrorFile(m_root.filePath("log"), QIODevice::Append);
    QStringList arguments { "-n", "localhost", "-p", QString::number(m_port), "-r", "off", "-c",
                            QStringLiteral(PDE_SOURCE_DIR "/tests/support/record-printer.sh") };
    if (m_accounting)
        arguments << "-a" << QStringLiteral(PDE_SOURCE_DIR "/tests/data/ipp-printer-capabilities.txt");
    arguments << "Test Printer";
    const bool up = startServer(*m_printer, QStringLiteral("/usr/sbin/ippeveprinter"), arguments, m_port);
    if (!up)
        return QStringLiteral("ippeveprinter did not come up:\n") + QString::fromUtf8(readFile(m_root.filePath("log")).right(2000));
    return {};
}

void PrivateIppPrinter::stop()
{
    for (std::unique_ptr<QProcess> *process : { &m_printer, &m_bus }) {
        if (*process) {
            (*process)->terminate();
            (*process)->waitForFinished(10000);
        }
        process->reset();
    }
}

QString PrivateIppPrinter::uri() const
{
    return QStringLiteral("ipp://localhost:%1/ipp/print").arg(m_port);
}

QString PrivateIppPrinter::accountIdReceived(const QString &jobName) const
{
    const QString record = m_root.filePath(QStringLiteral("records/") + jobName);
    if (!waitUntil([&] { return QFileInfo::exists(record); }))
        return QString();
    return QString::fromUtf8(readFile(record)).trimmed();
}

} // namespace pdetest
