#pragma once

namespace pdeprint {

// Delays between attempts to reach a server that is away: doubling from
// `first` up to `ceiling`, each drawn at random from its upper half, so that
// many clients that lost the server together do not come back in step.
class Backoff
{
public:
    Backoff(int firstMilliseconds, int ceilingMilliseconds);

    int nextMilliseconds();
    void reset() { m_attempts = 0; }

private:
    const int m_first;
    const int m_ceiling;
    int m_attempts = 0;
};

} // namespace pdeprint
