#pragma once

#include "host/check/Finding.h"
#include "host/check/ServerConfig.h"

namespace pdeprint {

// The attributes that carry a job's codes, which each policy must keep
// private: those of the JobPrivateValues line we ship.
QStringList codeAttributes();

// Whether each of the policies keeps the codes private to the job's owner.
Findings policyFindings(const ServerConfig &config, const QStringList &policies);

// Whether each of the policies makes users authenticate to submit jobs, so
// that nobody prints under another's name.
Findings submissionFindings(const ServerConfig &config, const QStringList &policies);

// Whether the page log records the codes.
Finding pageLogFinding(const ServerConfig &config);

// What `users` agents need of the scheduler.
struct AgentLimits
{
    int subscriptions = 0;
    int events = 0;
    int clients = 0;
};
AgentLimits agentLimits(int users);

// Whether MaxSubscriptions, MaxEvents and MaxClients suffice for them.
Findings limitFindings(const ServerConfig &config, int users);

} // namespace pdeprint
