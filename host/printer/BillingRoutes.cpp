#include "host/printer/BillingRoutes.h"

#include "host/CupsQueue.h"
#include "host/agent/cups/IppPtr.h"
#include "host/printer/Destination.h"

namespace pdeprint {

namespace {

// One attribute the queue reports, as text; empty when it has none.
QString queueAttribute(CupsConnection &cups, const QString &queue, const char *name)
{
    char uri[HTTP_MAX_URI];
    httpAssembleURIf(HTTP_URI_CODING_ALL, uri, sizeof(uri), "ipp", nullptr, "localhost", ippPort(), "/printers/%s",
                     queue.toUtf8().constData());
    ipp_t *request = ippNewRequest(IPP_OP_GET_PRINTER_ATTRIBUTES);
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_URI, "printer-uri", nullptr, uri);
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_NAME, "requesting-user-name", nullptr, cupsUser());
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes", nullptr, name);
    const IppPtr response(cupsDoRequest(cups.http(), request, "/"));
    ipp_attribute_t *attribute = response ? ippFindAttribute(response.get(), name, IPP_TAG_ZERO) : nullptr;
    char value[1024] = {};
    if (attribute)
        ippAttributeString(attribute, value, sizeof(value));
    return QString::fromUtf8(value);
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
    // Servers without PPDs say it in the queue's attributes.
    if (!ppd)
        routes.accountId = queueAttribute(cups, queue, "job-account-id-supported") == QLatin1String("true");
    return routes;
}

QString queueAccountIdDefault(CupsConnection &cups, const QString &queue)
{
    return queueAttribute(cups, queue, "job-account-id-default");
}

} // namespace pdeprint
