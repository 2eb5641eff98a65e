#include "host/agent/AgentCommand.h"

#include "host/CupsQueue.h"
#include "host/HostCallback.h"
#include "host/PanelSession.h"
#include "host/PrintCommand.h"
#include "host/agent/HeadlessRelease.h"
#include "host/agent/HeldJobAgent.h"
#include "host/agent/HeldJobHandler.h"
#include "host/agent/QuitOnSignal.h"
#include "host/agent/ServedQueues.h"
#include "host/agent/ThisHost.h"
#include "host/agent/cups/JobRequests.h"
#include "host/agent/ui/CodesCommand.h"
#include "host/agent/ui/DesktopNotifier.h"
#include "host/agent/ui/JobWindows.h"
#include "platform/UserDefaults.h"

#include <QApplication>
#include <QDateTime>
#include <QScopeGuard>

namespace pdeprint {

namespace {

QStringList panelOptionKeys(const std::vector<LoadedPlugin> &plugins)
{
    PanelSession session(plugins, std::make_shared<HostCallback>(pde::Printer(), nullptr));
    return session.panelOptionKeys();
}

// Releases every job offered, headless; one line on stderr for each that
// fails. A job from another host is left held: without a window nobody sees
// where it came from before it goes out on the user's codes.
class HeadlessHandler : public HeldJobHandler
{
public:
    HeadlessHandler(const std::vector<LoadedPlugin> &plugins, CupsConnection &cups, ReleaseSteps steps,
                    QTextStream &out, QTextStream &err)
        : m_plugins(plugins), m_cups(cups), m_steps(std::move(steps)), m_thisHost(ThisHost::probe()), m_out(out),
          m_err(err)
    {
    }
    void setAgent(HeldJobAgent *agent) { m_agent = agent; }

    void offer(const HeldJob &job) override
    {
        if (!m_thisHost.isOrigin(job.originHost)) {
            m_out << "job " << job.id << " on " << job.queue << " left held: sent from "
                  << (job.originHost.isEmpty() ? QStringLiteral("an unknown host") : job.originHost)
                  << ", not this machine; release it with --release " << job.id << Qt::endl;
            if (m_agent)
                m_agent->done(job.id);
            return;
        }
        QString error;
        switch (releaseHeadless(m_plugins, m_cups, job, m_steps, m_out, &error)) {
        case ReleaseOutcome::Released:
            m_out << "released job " << job.id << " on " << job.queue << Qt::endl;
            break;
        case ReleaseOutcome::NotKept:
            m_out << "job " << job.id << " on " << job.queue << " left held: no kept codes" << Qt::endl;
            break;
        case ReleaseOutcome::DryRun:
            break;
        case ReleaseOutcome::Failed:
            m_err << "pdeprint: " << error << Qt::endl;
            ++m_failures;
            break;
        }
        if (m_agent)
            m_agent->done(job.id);
    }
    void withdrawn(int) override { }
    int failures() const { return m_failures; }

private:
    const std::vector<LoadedPlugin> &m_plugins;
    CupsConnection &m_cups;
    ReleaseSteps m_steps;
    ThisHost m_thisHost;
    QTextStream &m_out;
    QTextStream &m_err;
    HeldJobAgent *m_agent = nullptr;
    int m_failures = 0;
};

// The job named on the command line, if the agent would handle it.
std::optional<HeldJob> releasableJob(CupsConnection &cups, ServedQueues &queues, int jobId, QString *error)
{
    std::optional<HeldJob> job = fetchJob(cups.http(), jobId, error);
    if (!job)
        return std::nullopt;
    if (job->owner != QString::fromUtf8(cupsUser()))
        *error = QStringLiteral("job %1 belongs to another user").arg(jobId);
    else if (!job->isHeld())
        *error = QStringLiteral("job %1 is not held").arg(jobId);
    else if (!queues.serves(cups, job->queue))
        *error = QStringLiteral("job %1 is on queue \"%2\", which has no panel of ours (see --queue)").arg(jobId).arg(job->queue);
    else
        return job;
    return std::nullopt;
}

// Runs the agent with the handler until a termination signal.
template <typename Handler>
int watchHeldJobs(CupsConnection &cups, ServedQueues &queues, Handler &handler, QTextStream &err)
{
    HeldJobAgent agent(cups, queues, handler, err);
    handler.setAgent(&agent);
    agent.start();
    QApplication::exec();
    return kExitOk;
}

} // namespace

bool isAgentCommand(const Options &options)
{
    return options.held || options.releaseJob > 0 || options.releaseKept || options.agent || options.codes;
}

int runAgentCommand(const Options &options, QTextStream &out, QTextStream &err)
{
    auto fail = [&err](const QString &why) {
        err << "pdeprint: " << why << Qt::endl;
        return kExitFailure;
    };
    // A dry run reads the kept codes but changes nothing on disk.
    pde::UserDefaults::setWritesSuspended(options.dryRun);
    const auto resumeWrites = qScopeGuard([] { pde::UserDefaults::setWritesSuspended(false); });
    const std::vector<LoadedPlugin> plugins = loadPlugins(options.pluginFolders, err);
    QString error;
    // The agent waits for a server that is away; the one-shot commands stop.
    std::unique_ptr<CupsConnection> cups = options.agent ? CupsConnection::openLater() : CupsConnection::open(&error);
    if (!cups)
        return fail(error);
    if (options.codes)
        return runCodesCommand(plugins, *cups, options.printer, err);
    ServedQueues queues(options.queues, panelOptionKeys(plugins));

    if (options.held) {
        const std::optional<QList<HeldJob>> held = fetchHeldJobs(cups->http(), &error);
        if (!held)
            return fail(error);
        for (const HeldJob &job : *held) {
            if (queues.serves(*cups, job.queue))
                out << job.id << '\t' << job.queue << '\t' << job.name << '\t'
                    << QDateTime::fromSecsSinceEpoch(job.createdAt).toString(Qt::ISODate) << '\n';
        }
        return kExitOk;
    }

    ReleaseSteps steps { options.actions, options.dryRun, options.releaseKept };
    if (options.releaseJob > 0) {
        const std::optional<HeldJob> job = releasableJob(*cups, queues, options.releaseJob, &error);
        if (!job)
            return fail(error);
        steps.onlyWhenKept = false;
        const ReleaseOutcome outcome = releaseHeadless(plugins, *cups, *job, steps, out, &error);
        return outcome == ReleaseOutcome::Failed ? fail(error) : kExitOk;
    }

    HeadlessHandler handler(plugins, *cups, steps, out, err);
    if (!options.agent) { // --release-kept alone: one pass over the jobs held now
        const std::optional<QList<HeldJob>> held = fetchHeldJobs(cups->http(), &error);
        if (!held)
            return fail(error);
        for (const HeldJob &job : *held) {
            if (queues.serves(*cups, job.queue))
                handler.offer(job);
        }
        return handler.failures() > 0 ? kExitFailure : kExitOk;
    }

    quitOnTerminationSignals();
    if (options.mode != DialogMode::Headless) {
        QApplication::setQuitOnLastWindowClosed(false); // the agent outlives its windows
        DesktopNotifier notifier;
        JobWindows windows(plugins, *cups, notifier, options.releaseKept, out, err);
        return watchHeldJobs(*cups, queues, windows, err);
    }
    return watchHeldJobs(*cups, queues, handler, err);
}

} // namespace pdeprint
