#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

namespace pdeprint {

class CupsConnection;

// Which queues the agent handles: the queues named on the command line when
// any were, otherwise those whose codes reach the printer: a PPD option that a
// loaded panel handles, or a printer that takes job-account-id. The answer
// for a queue is remembered until forget().
class ServedQueues
{
public:
    ServedQueues(QStringList named, QStringList panelOptionKeys);

    bool serves(CupsConnection &cups, const QString &queue);
    void forget() { m_known.clear(); }

private:
    QStringList m_named;
    QStringList m_panelOptionKeys;
    QMap<QString, bool> m_known;
};

} // namespace pdeprint
