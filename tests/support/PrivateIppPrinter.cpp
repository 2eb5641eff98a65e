#include "tests/support/PrivateIppPrinter.h"

#include "tests/support/PrivateScheduler.h"
#include "tests/support/TestSupport.h"

#include <QDir>
#include <QFileInfo>

#include <cups/cups.h>

#include <signal.h>
#include <sys/prctl.h>

namespace pdetest {

QString PrivateIppPrinter::start(const QString &busAddress)
{
    m_busAddress = busAddress;
    m_port = freeLoopbackPort();
    if (!m_root.isValid() || m_port == 0 || !QDir().mkpath(m_root.filePath("records")))
        return QStringLiteral("no temporary folder or free port");
    // -a replaces the printer's whole capability set, so the set comes from a
    // plain start, with accounting added.
    if (QString error = launch({}); !error.isEmpty())
        return error;
    const QString capabilities = m_root.filePath("capabilities");
    QProcess dump;
    dump.start(QStringLiteral("ipptool"), { "--ippserver", capabilities, uri(), "get-printer-attributes.test" });
    dump.waitForFinished(30000);
    stop();
    QByteArray set = readFile(capabilities);
    const qsizetype status = set.indexOf(" charset-configured "); // the status attributes begin here
    if (status < 0)
        return QStringLiteral("ipptool read no capabilities from the printer");
    set.truncate(set.lastIndexOf('\n', status) + 1);
    if (!writeFile(capabilities, set + "ATTR boolean job-account-id-supported true\n"))
        return QStringLiteral("cannot write the printer's capabilities");
    return launch({ "-a", capabilities, "-c", QStringLiteral(PDE_SOURCE_DIR "/tests/support/record-printer.sh") });
}

QString PrivateIppPrinter::launch(const QStringList &arguments)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DBUS_SYSTEM_BUS_ADDRESS"), m_busAddress);
    environment.insert(QStringLiteral("PDE_PRINTER_RECORDS"), m_root.filePath("records"));
    m_printer = std::make_unique<QProcess>();
    m_printer->setProcessEnvironment(environment);
    m_printer->setStandardInputFile(QProcess::nullDevice());
    m_printer->setStandardOutputFile(m_root.filePath("log"), QIODevice::Append);
    m_printer->setStandardErrorFile(m_root.filePath("log"), QIODevice::Append);
    m_printer->setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
    m_printer->start(QStringLiteral("/usr/sbin/ippeveprinter"),
                     QStringList { "-n", "localhost", "-p", QString::number(m_port), "-r", "off" } + arguments
                         + QStringList { "Test Printer" });
    const bool up = m_printer->waitForStarted(10000) && waitUntil([this] {
        if (m_printer->state() != QProcess::Running)
            return true;
        http_t *http = httpConnect2("localhost", m_port, nullptr, AF_UNSPEC, HTTP_ENCRYPTION_NEVER, 1, 200, nullptr);
        httpClose(http);
        return http != nullptr;
    });
    if (!up || m_printer->state() != QProcess::Running)
        return QStringLiteral("ippeveprinter did not come up:\n") + QString::fromUtf8(readFile(m_root.filePath("log")).right(2000));
    return {};
}

void PrivateIppPrinter::stop()
{
    if (m_printer) {
        m_printer->terminate();
        m_printer->waitForFinished(10000);
    }
    m_printer.reset();
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
