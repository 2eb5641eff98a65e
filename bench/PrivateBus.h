#pragma once

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <memory>

// A message bus of the bench's own, configured like a system bus that lets
// anyone send and receive signals; its socket in a temporary folder that the
// scheduler's notifier (running as another user) can reach.
class PrivateBus
{
public:
    PrivateBus() = default;
    ~PrivateBus();
    PrivateBus(const PrivateBus &) = delete;
    PrivateBus &operator=(const PrivateBus &) = delete;

    // Empty on success, else what went wrong.
    QString start();
    // For DBUS_SYSTEM_BUS_ADDRESS.
    QString address() const;

private:
    QTemporaryDir m_root;
    std::unique_ptr<QProcess> m_daemon;
};
