#include "host/agent/dbus/SchedulerBusSignals.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>

#include <cups/cups.h>

namespace pdeprint {

namespace {

bool serverIsLocal()
{
    const QString server = QString::fromUtf8(cupsServer());
    if (server.startsWith(QLatin1Char('/')))
        return true; // a domain socket
    QString host = server.section(QLatin1Char('@'), -1);
    if (host.startsWith(QLatin1Char('[')))
        host = host.mid(1).section(QLatin1Char(']'), 0, 0);
    else if (host.count(QLatin1Char(':')) == 1)
        host = host.section(QLatin1Char(':'), 0, 0);
    return host.compare(QLatin1String("localhost"), Qt::CaseInsensitive) == 0 || host.startsWith(QLatin1String("127."))
        || host == QLatin1String("::1");
}

} // namespace

bool SchedulerBusSignals::listen()
{
    if (!serverIsLocal())
        return false;
    QDBusConnection bus = QDBusConnection::systemBus();
    // Every member of the notifier's interface: job created, state, completed...
    return bus.isConnected()
        && bus.connect(QString(), QStringLiteral("/org/cups/cupsd/Notifier"), QStringLiteral("org.cups.cupsd.Notifier"),
                       QString(), this, SLOT(onSignal(QDBusMessage)));
}

void SchedulerBusSignals::onSignal(const QDBusMessage &)
{
    emit signalled();
}

} // namespace pdeprint
