#pragma once

#include <QHostAddress>
#include <QList>
#include <QString>
#include <QStringList>

namespace pdeprint {

// The agent's own machine, to tell a job printed here from one sent by
// another host, as the scheduler records it in job-originating-host-name.
class ThisHost
{
public:
    // `names` in lower case; `serverIsLocal` when the scheduler runs here,
    // so that its "localhost" is this machine.
    ThisHost(QStringList names, QList<QHostAddress> addresses, bool serverIsLocal);
    // This machine's host names and interface addresses, and whether the
    // CUPS server the agent talks to (cupsServer()) is one of them.
    static ThisHost probe();

    // Whether the job came from this machine. An empty origin is unknown,
    // and so not this machine.
    bool isOrigin(const QString &originHost) const;

private:
    bool isOwn(const QString &host) const;

    QStringList m_names;
    QList<QHostAddress> m_addresses;
    bool m_serverIsLocal;
};

} // namespace pdeprint
