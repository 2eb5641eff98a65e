#include "host/printer/BillingRoutes.h"

#include "host/CupsQueue.h"
#include "host/agent/cups/IppPtr.h"
#include "host/printer/Destination.h"

namespace pdeprint {

namespace {

// What the queue itself reports: servers without PPDs say it there.
bool queueReportsAccountId(CupsConnection &cups, const QString &queue)
{
    char uri[HTTP_MAX_URI];
    httpAssembleURIf(HTTP_URI_CODING_ALL, uri, sizeof(uri), "ipp", nullptr, "localhost", ippPort(), "/printers/%s",
                     queue.toUtf8().constData());
    ipp_t *request = ippNewRequest(IPP_OP_GET_PRINTER_ATTRIBUTES);
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_URI, "printer-uri", nullptr, uri);
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_NAME, "requesting-user-name", nullptr, cupsUser());
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes", nullptr,
                 "job-account-id-supported");
    const IppPtr response(cupsDoRequest(cups.http(), request, "/"));
    ipp_attribute_t *supported =
        response ? ippFindAttribute(response.get(), "job-account-id-supported", IPP_TAG_BOOLEAN) : nullptr;
    return supported && ippGetBoolean(supported, 0);
}

} // namespace

BillingRoutes billingRoutesOf(ppd_file_t *ppd, const QStringList &panelOptionKeys)
{
    BillingRoutes routes;
    if (!ppd)
        return routes;
    routes.hasPpd = true;
    for (const QString &key : panelOptionKeys) {
        if (ppdFindOption(ppd, key.toUtf8().constData()))
            routes.panelOptions << key;
    }
    ppd_attr_t *accountId = ppdFindAttr(ppd, "cupsJobAccountId", nullptr);
    routes.accountId = accountId && accountId->value && !strcasecmp(accountId->value, "true");
    return routes;
}

BillingRoutes billingRoutesOf(CupsConnection &cups, const QString &queue, const QStringList &panelOptionKeys)
{
    QString error;
    PpdPtr ppd(cups.openQueuePpd({ queue, {} }, &error));
    BillingRoutes routes = billingRoutesOf(ppd.get(), panelOptionKeys);
    if (!ppd)
        routes.accountId = queueReportsAccountId(cups, queue);
    return routes;
}

} // namespace pdeprint
