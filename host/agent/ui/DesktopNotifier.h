#pragma once

#include <QMap>
#include <QObject>
#include <QString>

namespace pdeprint {

// Desktop notifications over the session bus (org.freedesktop.Notifications).
// Without a bus, or without a notification server on it, notify() does
// nothing: the agent works the same.
class DesktopNotifier : public QObject
{
    Q_OBJECT
public:
    explicit DesktopNotifier(QObject *parent = nullptr);

    bool available() const { return m_available; }
    // With `codesQueue`, the notification offers to open the queue's codes
    // window (pdeprint --codes), where the server shows actions.
    void notify(const QString &summary, const QString &body, const QString &codesQueue = {});

private slots:
    void actionInvoked(uint id, const QString &action);
    void notificationClosed(uint id, uint reason);

private:
    bool m_available = false;
    bool m_actions = false;
    QMap<uint, QString> m_codesQueues; // notification id -> queue, while shown
};

} // namespace pdeprint
