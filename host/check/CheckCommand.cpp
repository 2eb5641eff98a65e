#include "host/check/CheckCommand.h"

#include "host/CupsQueue.h"
#include "host/HostCallback.h"
#include "host/PanelSession.h"
#include "host/PrintCommand.h"
#include "host/check/QueueFindings.h"
#include "host/check/ServerFindings.h"

#include <algorithm>

namespace pdeprint {

namespace {

const char *levelWord(Finding::Level level)
{
    switch (level) {
    case Finding::Level::Ok:
        return "ok";
    case Finding::Level::Warning:
        return "warning";
    case Finding::Level::Problem:
        break;
    }
    return "problem";
}

} // namespace

int runCheckCommand(const Options &options, QTextStream &out, QTextStream &err)
{
    auto fail = [&err](const QString &why) {
        err << "pdeprint: " << why << Qt::endl;
        return kExitUsage;
    };
    const std::vector<LoadedPlugin> plugins = loadPlugins(options.pluginFolders, err);
    QString error;
    std::unique_ptr<CupsConnection> cups = CupsConnection::open(&error);
    if (!cups)
        return fail(error);
    std::optional<std::vector<QueueState>> queues = fetchQueues(cups->http(), &error);
    if (!queues)
        return fail(error);
    if (!options.printers.isEmpty()) {
        std::vector<QueueState> named;
        for (const QString &name : options.printers) {
            auto queue = std::find_if(queues->begin(), queues->end(), [&](const QueueState &q) { return q.name == name; });
            if (queue == queues->end())
                return fail(QStringLiteral("unknown printer \"%1\"").arg(name));
            named.push_back(*queue);
        }
        *queues = named;
    }

    const QStringList panelOptionKeys =
        PanelSession(plugins, std::make_shared<HostCallback>(pde::Printer(), nullptr)).panelOptionKeys();
    Findings findings;
    QStringList policies; // those of the served queues
    for (const QueueState &queue : *queues) {
        bool served = false;
        const Findings found = queueFindings(*cups, queue, panelOptionKeys, &served);
        findings.insert(findings.end(), found.begin(), found.end());
        if (served && !policies.contains(queue.policy))
            policies << queue.policy;
    }
    if (const std::optional<ServerConfig> config = readServerConfig(*cups, &error)) {
        const Findings policy = policyFindings(*config, policies);
        findings.insert(findings.end(), policy.begin(), policy.end());
        const Findings submission = submissionFindings(*config, policies);
        findings.insert(findings.end(), submission.begin(), submission.end());
        findings.push_back(pageLogFinding(*config));
        if (options.users > 0) {
            const Findings limits = limitFindings(*config, options.users);
            findings.insert(findings.end(), limits.begin(), limits.end());
        }
    } else {
        findings.push_back({ Finding::Level::Warning, QStringLiteral("server"),
                             QStringLiteral("cannot read cupsd.conf (%1); run as an administrator to check the "
                                            "policies, the page log and the limits")
                                 .arg(error) });
    }

    for (const Finding &finding : findings)
        out << levelWord(finding.level) << ' ' << finding.subject << ": " << finding.text << '\n';
    out.flush();
    const bool problem = std::any_of(findings.begin(), findings.end(),
                                     [](const Finding &f) { return f.level == Finding::Level::Problem; });
    return problem ? kExitFailure : kExitOk;
}

} // namespace pdeprint
