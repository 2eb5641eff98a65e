#include "host/check/QueueFindings.h"

#include "host/CupsQueue.h"
#include "host/agent/cups/IppPtr.h"
#include "host/printer/BillingRoutes.h"

#include <QFile>

#include <cups/ppd.h>

#include <unistd.h>

namespace pdeprint {

namespace {

using enum Finding::Level;

QStringList stringsOf(ipp_attribute_t *attribute)
{
    QStringList values;
    for (int i = 0; i < ippGetCount(attribute); ++i)
        values << QString::fromUtf8(ippGetString(attribute, i, nullptr));
    return values;
}

// Whether libcups reads the PPD the server serves for the queue; a queue
// without one is fine here, its routes say the rest.
Finding ppdFinding(CupsConnection &cups, const QString &queue)
{
    const char *served = cupsGetPPD2(cups.http(), queue.toUtf8().constData());
    if (!served)
        return { Ok, queue, QStringLiteral("has no PPD") };
    const QByteArray path(served); // a temporary file in a static buffer
    ppd_file_t *ppd = ppdOpenFile(path.constData());
    int line = 0;
    const ppd_status_t status = ppdLastError(&line);
    QFile file(QString::fromLocal8Bit(path));
    const QByteArray text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    unlink(path.constData());
    if (ppd) {
        ppdClose(ppd);
        return { Ok, queue, QStringLiteral("its PPD loads") };
    }
    const QString why = QStringLiteral("its PPD does not load (%1 on line %2), so its jobs go through the wrong "
                                       "filters")
                            .arg(QString::fromUtf8(ppdErrorString(status)))
                            .arg(line);
    // What the scheduler generates for a printer that requires job-account-id:
    // the value starts with one quote too many.
    if (text.contains("\n*cupsMandatory: \"\""))
        return { Problem, queue,
                 why + QStringLiteral(": its *cupsMandatory line has one quote too many; fix it with "
                                      "sed 's/^\\*cupsMandatory: \"\"/*cupsMandatory: \"/' /etc/cups/ppd/%1.ppd "
                                      "> /tmp/%1.ppd && lpadmin -p %1 -P /tmp/%1.ppd")
                           .arg(queue) };
    return { Problem, queue, why + QStringLiteral("; correct it and install it again: lpadmin -p %1 -P FIXED.ppd").arg(queue) };
}

QString routesText(const BillingRoutes &routes)
{
    QStringList ways;
    if (!routes.panelOptions.isEmpty())
        ways << QStringLiteral("in the ticket, through the queue's filters (PPD options %1)")
                    .arg(routes.panelOptions.join(QStringLiteral(", ")));
    if (routes.accountId)
        ways << QStringLiteral("as job-account-id, which the printer takes");
    return QStringLiteral("the codes reach the printer ") + ways.join(QStringLiteral(" and "));
}

} // namespace

std::optional<std::vector<QueueState>> fetchQueues(http_t *http, QString *error)
{
    static const char *const wanted[] = { "printer-name", "job-hold-until-default", "printer-op-policy",
                                          "printer-mandatory-job-attributes", "job-account-id-default" };
    ipp_t *request = ippNewRequest(IPP_OP_CUPS_GET_PRINTERS);
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_NAME, "requesting-user-name", nullptr, cupsUser());
    ippAddStrings(request, IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes", int(std::size(wanted)),
                  nullptr, wanted);
    const IppPtr response(cupsDoRequest(http, request, "/"));
    if (!response || cupsLastError() > IPP_STATUS_OK_CONFLICTING) {
        if (cupsLastError() == IPP_STATUS_ERROR_NOT_FOUND) // a server without queues
            return std::vector<QueueState>();
        *error = QStringLiteral("cannot list the queues: %1").arg(QString::fromUtf8(cupsLastErrorString()));
        return std::nullopt;
    }
    std::vector<QueueState> queues;
    QueueState queue;
    // Each queue's attributes end at a separator, the last one at the end.
    for (ipp_attribute_t *attribute = ippFirstAttribute(response.get());; attribute = ippNextAttribute(response.get())) {
        const char *name = attribute ? ippGetName(attribute) : nullptr;
        if (!name) {
            if (!queue.name.isEmpty())
                queues.push_back(queue);
            queue = {};
            if (!attribute)
                break;
            continue;
        }
        if (ippGetGroupTag(attribute) != IPP_TAG_PRINTER)
            continue;
        const QString value = QString::fromUtf8(ippGetString(attribute, 0, nullptr));
        if (!strcmp(name, "printer-name"))
            queue.name = value;
        else if (!strcmp(name, "job-hold-until-default"))
            queue.holdUntil = value;
        else if (!strcmp(name, "printer-op-policy"))
            queue.policy = value;
        else if (!strcmp(name, "printer-mandatory-job-attributes"))
            queue.mandatory = stringsOf(attribute);
        else if (!strcmp(name, "job-account-id-default"))
            queue.accountIdDefault = value;
    }
    return queues;
}

Findings queueFindings(CupsConnection &cups, const QueueState &queue, const QStringList &panelOptionKeys,
                       bool *served)
{
    const QString &name = queue.name;
    Findings findings { ppdFinding(cups, name) };
    const BillingRoutes routes = billingRoutesOf(cups, name, panelOptionKeys);
    const bool holds = queue.holdUntil == QLatin1String("indefinite");
    *served = routes.reachPrinter();
    // Without its PPD the routes are unknown, not nowhere: the fix is the PPD's.
    const bool ppdBroken = findings.front().level == Problem;
    if (!*served && holds && ppdBroken) {
        findings.push_back({ Warning, name, QStringLiteral("the agent leaves its held jobs alone until its PPD loads") });
        return findings;
    }
    if (!*served) {
        if (holds)
            findings.push_back(
                { Problem, name,
                  QStringLiteral("holds new jobs, but the codes reach no printer: no PPD option a panel handles, "
                                 "and the printer does not take job-account-id, so the agent never releases them; "
                                 "give the queue a PPD with the panels' options (lpadmin -p %1 -P FILE.ppd), "
                                 "or stop holding its jobs (lpadmin -p %1 -o job-hold-until-default=no-hold)")
                      .arg(name) });
        else
            findings.push_back({ Ok, name, QStringLiteral("not used for billing codes: they would reach no printer, "
                                                          "and the agent leaves the queue alone") });
        return findings;
    }
    findings.push_back({ Ok, name, routesText(routes) });
    findings.push_back({ Ok, name, QStringLiteral("the agent serves it, since the codes reach the printer") });
    if (holds)
        findings.push_back({ Ok, name, QStringLiteral("holds new jobs until the agent releases them") });
    else
        findings.push_back({ Warning, name,
                             QStringLiteral("jobs from other applications print at once, without codes; to hold "
                                            "them for the agent: lpadmin -p %1 -o job-hold-until-default=indefinite")
                                 .arg(name) });
    // The scheduler refuses a job without a mandatory attribute instead of
    // holding it, unless the queue gives it a default.
    if (queue.mandatory.contains(QLatin1String("job-account-id"))) {
        if (queue.accountIdDefault.isEmpty())
            findings.push_back({ Problem, name,
                                 QStringLiteral("the printer requires job-account-id, so jobs without a code (from "
                                                "other applications) are refused instead of held for the agent; give "
                                                "them a placeholder until released: "
                                                "lpadmin -p %1 -o job-account-id-default=none")
                                     .arg(name) });
        else
            findings.push_back({ Ok, name,
                                 QStringLiteral("the printer requires job-account-id; jobs without a code carry "
                                                "\"%1\" until released")
                                     .arg(queue.accountIdDefault) });
    }
    return findings;
}

} // namespace pdeprint
