#pragma once

#include "host/agent/cups/HeldJob.h"

namespace pdeprint {

// What the agent does with the held jobs it finds: release them headless, or
// open a window for each.
class HeldJobHandler
{
public:
    virtual ~HeldJobHandler() = default;
    // A held job of a served queue, offered once per run. The handler tells
    // the agent with HeldJobAgent::done() when it is finished with the job,
    // whatever became of it.
    virtual void offer(const HeldJob &job) = 0;
    // An offered job stopped being held elsewhere (cancelled, released,
    // finished): send nothing for it.
    virtual void withdrawn(int jobId) = 0;
};

} // namespace pdeprint
