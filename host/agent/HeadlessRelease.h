#pragma once

#include <QString>
#include <QTextStream>

#include <vector>

#include "host/CommandLine.h"
#include "host/PluginLoader.h"
#include "host/agent/cups/HeldJob.h"

namespace pdeprint {

class CupsConnection;

struct ReleaseSteps
{
    std::vector<ControlAction> actions; // applied to the panels in order
    bool dryRun = false;                // print the ticket, send nothing
    bool onlyWhenKept = false;          // leave the job held unless its queue's record is kept
};

enum class ReleaseOutcome { Released, DryRun, NotKept, Failed };

// Drives the held job's panels without a window and releases it with the
// ticket; a dry run prints the ticket as name=value lines instead. The job is
// read again just before the release: one no longer held is left alone.
ReleaseOutcome releaseHeadless(const std::vector<LoadedPlugin> &plugins, CupsConnection &cups, const HeldJob &job,
                               const ReleaseSteps &steps, QTextStream &out, QString *error);

} // namespace pdeprint
