#include "host/agent/Backoff.h"

#include <QRandomGenerator>

#include <algorithm>

namespace pdeprint {

Backoff::Backoff(int firstMilliseconds, int ceilingMilliseconds)
    : m_first(firstMilliseconds), m_ceiling(ceilingMilliseconds)
{
}

int Backoff::nextMilliseconds()
{
    qint64 delay = m_first;
    for (int i = 0; i < m_attempts && delay < m_ceiling; ++i)
        delay *= 2;
    ++m_attempts;
    delay = std::min<qint64>(delay, m_ceiling);
    return int(delay / 2 + QRandomGenerator::global()->bounded(delay / 2 + 1));
}

} // namespace pdeprint
