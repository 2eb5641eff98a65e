#include "host/agent/ui/DesktopNotifier.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QProcess>
#include <QStringList>
#include <QVariantMap>

namespace pdeprint {

namespace {

const QString kService = QStringLiteral("org.freedesktop.Notifications");
const QString kPath = QStringLiteral("/org/freedesktop/Notifications");
const QString kInterface = QStringLiteral("org.freedesktop.Notifications");
const QString kCodesAction = QStringLiteral("codes");

} // namespace

DesktopNotifier::DesktopNotifier(QObject *parent) : QObject(parent)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    // A notification server may be started by the bus on the first call.
    QDBusConnectionInterface *names = bus.interface();
    const bool registered = names && names->isServiceRegistered(kService).value();
    const bool activatable = names && names->activatableServiceNames().value().contains(kService);
    m_available = registered || activatable;
    if (!m_available)
        return;
    const QDBusMessage capabilities =
        bus.call(QDBusMessage::createMethodCall(kService, kPath, kInterface, QStringLiteral("GetCapabilities")),
                 QDBus::Block, 5000);
    m_actions = capabilities.type() == QDBusMessage::ReplyMessage && !capabilities.arguments().isEmpty()
        && capabilities.arguments().first().toStringList().contains(QStringLiteral("actions"));
    if (m_actions) {
        bus.connect(kService, kPath, kInterface, QStringLiteral("ActionInvoked"), this,
                    SLOT(actionInvoked(uint, QString)));
        bus.connect(kService, kPath, kInterface, QStringLiteral("NotificationClosed"), this,
                    SLOT(notificationClosed(uint, uint)));
    }
}

void DesktopNotifier::notify(const QString &summary, const QString &body, const QString &codesQueue)
{
    if (!m_available)
        return;
    QStringList actions;
    if (m_actions && !codesQueue.isEmpty())
        actions << kCodesAction << tr("Change codes…");
    QDBusMessage call = QDBusMessage::createMethodCall(kService, kPath, kInterface, QStringLiteral("Notify"));
    call << QStringLiteral("pdeprint") << uint(0) << QStringLiteral("printer") << summary << body << actions
         << QVariantMap() << int(-1);
    // Asynchronous: a slow notification server must not hold up the agent.
    auto *watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, actions, codesQueue] {
        const QDBusPendingReply<uint> reply = *watcher;
        if (reply.isValid() && !actions.isEmpty())
            m_codesQueues.insert(reply.value(), codesQueue);
        watcher->deleteLater();
    });
}

void DesktopNotifier::actionInvoked(uint id, const QString &action)
{
    const QString queue = m_codesQueues.take(id);
    if (action == kCodesAction && !queue.isEmpty())
        QProcess::startDetached(QCoreApplication::applicationFilePath(),
                                { QStringLiteral("--codes"), QStringLiteral("--printer"), queue });
}

void DesktopNotifier::notificationClosed(uint id, uint)
{
    m_codesQueues.remove(id);
}

} // namespace pdeprint
