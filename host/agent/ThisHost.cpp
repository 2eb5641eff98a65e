#include "host/agent/ThisHost.h"

#include <QHostInfo>
#include <QNetworkInterface>

#include <cups/cups.h>

namespace pdeprint {

namespace {

// cupsd writes an IPv6 peer as "[v1.ADDRESS]"; a name may end in the root's dot.
QString plainHost(QString host)
{
    if (host.startsWith(QLatin1Char('[')) && host.endsWith(QLatin1Char(']')))
        host = host.mid(1).chopped(1);
    if (host.startsWith(QLatin1String("v1."), Qt::CaseInsensitive))
        host = host.mid(3);
    if (host.endsWith(QLatin1Char('.')))
        host.chop(1);
    return host.toLower();
}

bool isLoopback(const QString &host)
{
    return host == QLatin1String("localhost") || QHostAddress(host).isLoopback();
}

} // namespace

ThisHost::ThisHost(QStringList names, QList<QHostAddress> addresses, bool serverIsLocal)
    : m_names(std::move(names)), m_addresses(std::move(addresses)), m_serverIsLocal(serverIsLocal)
{
}

ThisHost ThisHost::probe()
{
    QStringList names { QHostInfo::localHostName().toLower() };
    if (const QString domain = QHostInfo::localDomainName(); !domain.isEmpty())
        names << (names.first() + QLatin1Char('.') + domain).toLower();
    ThisHost host(names, QNetworkInterface::allAddresses(), false);
    // A domain socket, or a name without its port.
    const QString server = QString::fromUtf8(cupsServer());
    host.m_serverIsLocal = server.startsWith(QLatin1Char('/')) || isLoopback(plainHost(server)) || host.isOwn(server);
    return host;
}

bool ThisHost::isOrigin(const QString &originHost) const
{
    const QString host = plainHost(originHost);
    if (isLoopback(host)) // the scheduler's own machine
        return m_serverIsLocal;
    return isOwn(host);
}

bool ThisHost::isOwn(const QString &host) const
{
    const QString plain = plainHost(host);
    const QHostAddress address(plain);
    if (!address.isNull())
        return m_addresses.contains(address);
    return !plain.isEmpty() && m_names.contains(plain);
}

} // namespace pdeprint
