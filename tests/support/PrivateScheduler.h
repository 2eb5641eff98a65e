#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

namespace pdetest {

// One CUPS scheduler for the test process on a free loopback port, every file
// in a temporary folder, with a queue on the sample PPD for each name. It sets
// CUPS_SERVER for the children and libcups. Stopped after the last test however
// the tests went, and with the test process should that die first.
class PrivateScheduler : public ::testing::Environment
{
public:
    explicit PrivateScheduler(QStringList queues) : m_queues(std::move(queues)) { }
    void SetUp() override { error = start(); }
    void TearDown() override;

    QString error; // why it did not come up
    QByteArray server; // "127.0.0.1:port"

private:
    QString start();
    QString log();

    QStringList m_queues;
    QTemporaryDir m_root;
    std::unique_ptr<QProcess> m_cupsd;
};

} // namespace pdetest
