#include "host/agent/ServedQueues.h"

#include "host/CupsQueue.h"

namespace pdeprint {

ServedQueues::ServedQueues(QStringList named, QStringList panelOptionKeys)
    : m_named(std::move(named)), m_panelOptionKeys(std::move(panelOptionKeys))
{
}

bool ServedQueues::serves(CupsConnection &cups, const QString &queue)
{
    if (!m_named.isEmpty())
        return m_named.contains(queue);
    if (auto known = m_known.constFind(queue); known != m_known.constEnd())
        return *known;
    QString error;
    ppd_file_t *ppd = cups.openQueuePpd({ queue, {} }, &error);
    bool served = false;
    for (const QString &key : m_panelOptionKeys)
        served = served || (ppd && ppdFindOption(ppd, key.toUtf8().constData()));
    ppdClose(ppd);
    m_known.insert(queue, served);
    return served;
}

} // namespace pdeprint
