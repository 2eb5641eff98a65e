#include "host/agent/HeadlessRelease.h"

#include "host/ControlActions.h"
#include "host/CupsQueue.h"
#include "host/agent/JobPanelSession.h"
#include "host/agent/cups/JobRequests.h"

namespace pdeprint {

ReleaseOutcome releaseHeadless(const std::vector<LoadedPlugin> &plugins, CupsConnection &cups, const HeldJob &job,
                               const ReleaseSteps &steps, QTextStream &out, QString *error)
{
    std::unique_ptr<JobPanelSession> session = JobPanelSession::open(plugins, cups, job, error);
    if (!session)
        return ReleaseOutcome::Failed;
    if (!applyControlActions(session->views(), steps.actions, false, error))
        return ReleaseOutcome::Failed;
    // Before shouldPrint, which would store the record of a queue not kept.
    if (steps.onlyWhenKept && !session->saveAndCheckKept())
        return ReleaseOutcome::NotKept;
    QMap<QString, QString> ticket;
    if (!session->finish(&ticket, error))
        return ReleaseOutcome::Failed;
    if (steps.dryRun) {
        for (auto it = ticket.cbegin(); it != ticket.cend(); ++it)
            out << it.key() << '=' << it.value() << '\n';
        out.flush();
        return ReleaseOutcome::DryRun;
    }
    const std::optional<HeldJob> now = fetchJob(cups.http(), job.id, error);
    if (!now)
        return ReleaseOutcome::Failed;
    if (!now->isHeld()) {
        *error = QStringLiteral("job %1 is no longer held; nothing sent").arg(job.id);
        return ReleaseOutcome::Failed;
    }
    return releaseJob(cups.http(), job.id, ticket, error) ? ReleaseOutcome::Released : ReleaseOutcome::Failed;
}

} // namespace pdeprint
