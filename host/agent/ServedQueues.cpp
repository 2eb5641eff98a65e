#include "host/agent/ServedQueues.h"

#include "host/printer/BillingRoutes.h"

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
    const bool served = billingRoutesOf(cups, queue, m_panelOptionKeys).reachPrinter();
    m_known.insert(queue, served);
    return served;
}

} // namespace pdeprint
