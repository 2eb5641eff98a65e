#pragma once

#include <QMap>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <memory>

namespace hosttest {

// A CUPS scheduler of the test's own: every file in a temporary folder, a free
// port on 127.0.0.1 and a domain socket. Stopped when it goes, and killed
// with the test process should that die first.
class PrivateScheduler
{
public:
    PrivateScheduler();
    ~PrivateScheduler();

    // False with the reason (and the scheduler's log) when it did not come up.
    bool start(QString *error);
    void stop();

    // For CUPS_SERVER.
    QString server() const;
    // Adds a queue with the PPD that prints to /dev/null.
    bool addQueue(const QString &name, const QString &ppd, QString *error);
    // The job's attributes as text, by name; empty when there is no such job.
    QMap<QString, QString> jobAttributes(int jobId);
    // Ids of every job the scheduler knows.
    QList<int> jobIds();

private:
    QString log() const;

    QTemporaryDir m_root;
    int m_port = 0;
    std::unique_ptr<QProcess> m_process;
};

} // namespace hosttest
