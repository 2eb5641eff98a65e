// pdeprint --check against private schedulers set up right and set up wrong:
// each row a queue or a server, and the finding line it must produce.

#include "tests/host/PdeprintProcess.h"
#include "tests/support/PrivateScheduler.h"

#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace hosttest;

namespace {

// What the scheduler generates for a printer that requires job-account-id.
const QString kGeneratedPpd = pdetest::testDataPath(QStringLiteral("generated-mandatory-account-id.ppd"));

pdetest::QueueSetup queue(const QString &name, bool holds, const QString &ppd = {}, bool privatePolicy = true)
{
    return { name, holds, ppd, privatePolicy };
}

} // namespace

TEST(Check, EachSetUpGivesItsFindingAndExitStatus)
{
    // The same PPD with its *cupsMandatory line as it should be.
    QTemporaryDir dir;
    const QString required = dir.filePath("required.ppd");
    ASSERT_TRUE(pdetest::writeFile(required, pdetest::readFile(kGeneratedPpd).replace("\"\"job-account-id", "\"job-account-id")));
    // Every attribute of the shipped JobPrivateValues line, which a policy without it must name.
    const QString codeAttributes = pdetest::shippedPolicyLines().last().split(' ').mid(2).join(", ");
    pdetest::QueueSetup broken = queue("broken", true);
    broken.servedPpd = kGeneratedPpd;
    // One scheduler set up as the README says, with queues that are not; a
    // second whose page log does not record the codes; a third that shows its
    // configuration to nobody here.
    pdetest::PrivateScheduler readme, noPageLog, closed;
    ASSERT_EQ(readme.start({ .queues = { queue("office", true), queue("open", true, {}, false), queue("raw", true, "-"),
                                         broken, queue("required", true, required), queue("nohold", false) },
                             .policyLines = pdetest::shippedPolicyLines(),
                             .extraLines = { "MaxSubscriptions 1000", "MaxEvents 5000", "MaxClients 550",
                                             "DefaultAuthType Basic" } }),
              QString());
    // The shipped submission block, but the scheduler's DefaultAuthType is None.
    ASSERT_EQ(noPageLog.start({ .queues = { queue("office", true) },
                                .policyLines = pdetest::shippedPolicyLines().mid(0, 5)
                                    + QStringList { "JobPrivateAccess all", pdetest::shippedPolicyLines().last() },
                                .extraLines = { "PageLogFormat" } }),
              QString());
    ASSERT_EQ(closed.start({ .queues = { queue("office", true) },
                             .extraLines = { "<Location /admin/conf>", "AuthType Basic", "Require user @SYSTEM", "</Location>" } }),
              QString());

    const struct { const pdetest::PrivateScheduler *server; QStringList arguments; int exitCode; QStringList lines; } rows[] = {
        { &readme, { "--printer", "office", "--users", "500" }, 0,
          { "ok office: its PPD loads",
            "ok office: the codes reach the printer in the ticket, through the queue's filters (PPD options ARMainCode, ARSubCode)",
            "ok office: the agent serves it", "ok office: holds new jobs", "ok server: policy \"private\" keeps the codes",
            "ok server: policy \"private\" takes jobs only from authenticated users",
            "ok server: the page log records the codes", "ok server: MaxSubscriptions 1000 is enough for 500 agents",
            "ok server: MaxEvents 5000 is enough", "ok server: MaxClients 550 is enough" } },
        { &readme, { "--printer", "office", "--users", "501" }, 0,
          { "warning server: MaxSubscriptions 1000 is too low for 501 agents", "set \"MaxSubscriptions 1002\"",
            "warning server: MaxEvents 5000 is too low for 501 agents", "set \"MaxEvents 5010\"",
            "warning server: MaxClients 550 is too low for 501 agents", "set \"MaxClients 551\"" } },
        { &readme, { "--printer", "open" }, 1,
          { "problem server: under policy \"default\" other users can read the codes (JobPrivateValues leaves out "
            + codeAttributes + "); in the block <Policy default> of cupsd.conf put the lines \"JobPrivateAccess default\" "
            "and \"" + pdetest::shippedPolicyLines().last() + "\"",
            "problem server: under policy \"default\" anyone can submit jobs under any user's name (Create-Job, "
            "Print-Job without authentication)",
            "put the lines \"<Limit Create-Job Print-Job Print-URI Validate-Job> / AuthType Default / Require "
            "valid-user / Order deny,allow / </Limit>\" before its own <Limit> blocks" } },
        { &readme, { "--printer", "raw" }, 1,
          { "ok raw: has no PPD", "problem raw: holds new jobs, but the codes reach no printer",
            "or stop holding its jobs (lpadmin -p raw -o job-hold-until-default=no-hold)" } },
        { &readme, { "--printer", "broken" }, 1,
          { "problem broken: its PPD does not load (Missing asterisk in column 1 on line 95)",
            "sed 's/^\\*cupsMandatory: \"\"/*cupsMandatory: \"/' /etc/cups/ppd/broken.ppd > /tmp/broken.ppd && "
            "lpadmin -p broken -P /tmp/broken.ppd",
            "warning broken: the agent leaves its held jobs alone until its PPD loads" } },
        { &readme, { "--printer", "required" }, 1,
          { "ok required: the codes reach the printer as job-account-id",
            "problem required: the printer requires job-account-id",
            "lpadmin -p required -o job-account-id-default=none" } },
        { &readme, { "--printer", "nohold" }, 0,
          { "warning nohold: jobs from other applications print at once, without codes; to hold them for the agent: "
            "lpadmin -p nohold -o job-hold-until-default=indefinite" } },
        { &readme, { "--printer", "nosuch" }, 2, {} },
        { &noPageLog, { "--users", "50" }, 1,
          { "warning server: the page log does not record the codes; in cupsd.conf set \"PageLogFormat %p",
            "problem server: under policy \"private\" other users can read the codes (JobPrivateAccess all lets other users read them)",
            "problem server: under policy \"private\" anyone can submit jobs under any user's name (Create-Job, Print-Job",
            "warning server: MaxEvents 100 is too low for 50 agents" } },
        { &closed, { "--users", "50" }, 0,
          { "warning server: cannot read cupsd.conf (Unauthorized); run as an administrator to check the policies, the "
            "page log and the limits" } },
    };
    for (const auto &[server, arguments, exitCode, lines] : rows) {
        qputenv("CUPS_SERVER", server->server().toUtf8());
        const RunResult result = runPdeprint(QStringList { "--check" } + arguments);
        EXPECT_EQ(result.exitCode, exitCode) << qPrintable(arguments.join(' ') + '\n' + result.out + result.err);
        const QStringList out = result.out.split('\n', Qt::SkipEmptyParts);
        for (const QString &line : out)
            EXPECT_TRUE(line.startsWith("ok ") || line.startsWith("warning ") || line.startsWith("problem ")) << qPrintable(line);
        // A set-up as the README says has nothing but ok lines.
        if (arguments.contains("500")) {
            EXPECT_EQ(out.filter(QRegularExpression("^ok ")).size(), out.size()) << qPrintable(result.out);
        }
        for (const QString &expected : lines)
            EXPECT_EQ(out.filter(expected).size(), 1) << qPrintable(expected + "\nin:\n" + result.out);
    }
}
