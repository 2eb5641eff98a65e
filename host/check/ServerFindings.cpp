#include "host/check/ServerFindings.h"

namespace pdeprint {

namespace {

using enum Finding::Level;

const QString kServer = QStringLiteral("server");

// The shipped policy line (examples/billing-codes-private.policy), put here
// by the build so that the check and the file cannot disagree.
const QString kPrivateValuesLine = QStringLiteral(PDE_PRIVATE_VALUES_LINE);
// The shipped <Limit> block that makes job submission authenticate, its lines joined by " / ".
const QString kSubmitLimitLines = QStringLiteral(PDE_SUBMIT_LIMIT_LINES);

// cupsd's own values when cupsd.conf does not set one.
constexpr int kDefaultLimit = 100;
const QString kDefaultPageLogFormat =
    QStringLiteral("%p %u %j %T %P %C %{job-billing} %{job-originating-host-name} %{job-name} %{media} %{sides}");

// The <Limit> that governs an operation: the first naming it, else <Limit All>.
const ServerConfig::Limit *governingLimit(const ServerConfig::Policy &policy, const QString &operation)
{
    for (const QString &name : { operation, QStringLiteral("all") }) {
        for (const ServerConfig::Limit &limit : policy.limits) {
            if (limit.operations.contains(name))
                return &limit;
        }
    }
    return nullptr;
}

// Without an authentication type cupsd takes the requesting-user-name a
// client sends, whatever Require says.
bool authenticates(const ServerConfig &config, const ServerConfig::Limit *limit)
{
    if (!limit || !limit->requiresUser)
        return false;
    const QString type = limit->authType == QLatin1String("default")
        ? config.directives.value(QStringLiteral("defaultauthtype"), QStringLiteral("Basic")).toLower()
        : limit->authType;
    return !type.isEmpty() && type != QLatin1String("none");
}

} // namespace

QStringList codeAttributes()
{
    QStringList words = kPrivateValuesLine.split(QLatin1Char(' '), Qt::SkipEmptyParts).mid(1);
    words.removeAll(QStringLiteral("default"));
    return words;
}

Findings policyFindings(const ServerConfig &config, const QStringList &policies)
{
    Findings findings;
    for (const QString &name : policies) {
        const ServerConfig::Policy policy = config.policies.value(name.toLower());
        QStringList wrong;
        // Any JobPrivateAccess but these shows private values to others.
        for (const QString &word : policy.privateAccess) {
            if (!word.compare(QLatin1String("all"), Qt::CaseInsensitive)
                || !word.compare(QLatin1String("@ACL"), Qt::CaseInsensitive))
                wrong << QStringLiteral("JobPrivateAccess %1 lets other users read them").arg(word);
        }
        if (!policy.privateValues.contains(QLatin1String("all"), Qt::CaseInsensitive)) {
            QStringList missing;
            for (const QString &attribute : codeAttributes()) {
                if (!policy.privateValues.contains(attribute))
                    missing << attribute;
            }
            if (!missing.isEmpty())
                wrong << QStringLiteral("JobPrivateValues leaves out %1").arg(missing.join(QStringLiteral(", ")));
        }
        if (wrong.isEmpty()) {
            findings.push_back({ Ok, kServer, QStringLiteral("policy \"%1\" keeps the codes private to the job's owner").arg(name) });
            continue;
        }
        findings.push_back({ Problem, kServer,
                             QStringLiteral("under policy \"%1\" other users can read the codes (%2); in the block "
                                            "<Policy %1> of cupsd.conf put the lines \"JobPrivateAccess default\" "
                                            "and \"%3\" instead of its own, then restart cupsd")
                                 .arg(name, wrong.join(QStringLiteral("; ")), kPrivateValuesLine) });
    }
    return findings;
}

Findings submissionFindings(const ServerConfig &config, const QStringList &policies)
{
    Findings findings;
    for (const QString &name : policies) {
        const ServerConfig::Policy policy = config.policies.value(name.toLower());
        QStringList open;
        for (const QString &operation : { QStringLiteral("Create-Job"), QStringLiteral("Print-Job") }) {
            if (!authenticates(config, governingLimit(policy, operation.toLower())))
                open << operation;
        }
        if (open.isEmpty()) {
            findings.push_back({ Ok, kServer, QStringLiteral("policy \"%1\" takes jobs only from authenticated users").arg(name) });
            continue;
        }
        findings.push_back({ Problem, kServer,
                             QStringLiteral("under policy \"%1\" anyone can submit jobs under any user's name (%2 "
                                            "without authentication), and the agent of that user releases them with "
                                            "the user's kept codes; in the block <Policy %1> of cupsd.conf put the "
                                            "lines \"%3\" before its own <Limit> blocks, and a DefaultAuthType other "
                                            "than None, then restart cupsd")
                                 .arg(name, open.join(QStringLiteral(", ")), kSubmitLimitLines) });
    }
    return findings;
}

Finding pageLogFinding(const ServerConfig &config)
{
    const QString format = config.directives.value(QStringLiteral("pagelogformat"), kDefaultPageLogFormat);
    if (format.contains(QLatin1String("%{job-billing}")) || format.contains(QLatin1String("%{job-account-id}")))
        return { Ok, kServer, QStringLiteral("the page log records the codes") };
    return { Warning, kServer,
             QStringLiteral("the page log does not record the codes; in cupsd.conf set \"PageLogFormat %1\", then "
                            "restart cupsd")
                 .arg(kDefaultPageLogFormat) };
}

AgentLimits agentLimits(int users)
{
    // Each agent holds one subscription, and a second for the bus notifier
    // or until the lease of one it could not cancel ends. Events: a few a job
    // for the jobs arriving within a second or two. Clients: an agent holds a
    // connection only around each poll, but keeps a TLS one.
    return { 2 * users, 10 * users, users + 50 };
}

Findings limitFindings(const ServerConfig &config, int users)
{
    // Below these the agents still release every job, later: those refused a
    // subscription list their jobs every 5 s, an overflowing event store
    // makes them list again, and TLS agents refused a client slot wait.
    const AgentLimits needed = agentLimits(users);
    const struct { const char *directive; int needed; const char *shortfall; } limits[] = {
        { "MaxSubscriptions", needed.subscriptions, "the agents beyond it find new jobs up to 5 s late" },
        { "MaxEvents", needed.events, "a burst of jobs overflows it, and the agents list their jobs again" },
        { "MaxClients", needed.clients, "agents that speak TLS to the server keep their connection and are refused" },
    };
    Findings findings;
    for (const auto &[directive, need, shortfall] : limits) {
        const QString name = QString::fromLatin1(directive);
        bool set = false;
        const int value = config.directives.value(name.toLower()).toInt(&set);
        const int limit = set ? value : kDefaultLimit;
        if (limit >= need || (limit == 0 && name == QLatin1String("MaxSubscriptions"))) // 0: no limit
            findings.push_back({ Ok, kServer, QStringLiteral("%1 %2 is enough for %3 agents").arg(name).arg(limit).arg(users) });
        else
            findings.push_back({ Warning, kServer,
                                 QStringLiteral("%1 %2 is too low for %3 agents: %4; in cupsd.conf set \"%1 %5\", "
                                                "then restart cupsd")
                                     .arg(name).arg(limit).arg(users).arg(QString::fromLatin1(shortfall)).arg(need) });
    }
    return findings;
}

} // namespace pdeprint
