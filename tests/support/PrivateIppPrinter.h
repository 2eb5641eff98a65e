#pragma once

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <memory>

namespace pdetest {

// An IPP Everywhere printer of the test's own (ippeveprinter) on a free
// loopback port, that supports job-account-id
// (tests/data/ipp-printer-capabilities.txt) unless made without accounting,
// with a message bus of its own to stand in for the system bus it insists on. Each job it prints leaves the job-account-id it received in a
// file named after the job's name.
class PrivateIppPrinter
{
public:
    explicit PrivateIppPrinter(bool accounting = true);
    ~PrivateIppPrinter() { stop(); }
    PrivateIppPrinter(const PrivateIppPrinter &) = delete;
    PrivateIppPrinter &operator=(const PrivateIppPrinter &) = delete;

    // Empty on success, else what went wrong.
    QString start();
    void stop();

    QString uri() const;
    // The job-account-id of the job named `jobName` (waits for it); null
    // when no such job arrived, empty when it came without one.
    QString accountIdReceived(const QString &jobName) const;

private:
    QTemporaryDir m_root;
    std::unique_ptr<QProcess> m_bus;
    std::unique_ptr<QProcess> m_printer;
    const int m_port;
    const bool m_accounting;
};

} // namespace pdetest
