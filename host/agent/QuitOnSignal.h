#pragma once

namespace pdeprint {

// SIGTERM and SIGINT end the application's event loop, so that the agent
// leaves through its destructors (the subscription is cancelled).
void quitOnTerminationSignals();

} // namespace pdeprint
