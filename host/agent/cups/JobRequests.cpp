#include "host/agent/cups/JobRequests.h"

#include "host/AccountAttributes.h"
#include "host/agent/cups/IppPtr.h"

#include <QByteArray>
#include <QUrl>

#include <algorithm>

namespace pdeprint {

namespace {

QByteArray jobUri(int jobId)
{
    char uri[HTTP_MAX_URI];
    httpAssembleURIf(HTTP_URI_CODING_ALL, uri, sizeof(uri), "ipp", nullptr, "localhost", ippPort(), "/jobs/%d", jobId);
    return uri;
}

QString queueOfPrinterUri(const char *uri)
{
    const QString path = QUrl(QString::fromUtf8(uri)).path();
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

// Adds one attribute of a job group to the job.
void takeAttribute(ipp_attribute_t *attribute, HeldJob *job)
{
    const char *name = ippGetName(attribute);
    const ipp_tag_t tag = ippGetValueTag(attribute);
    if (!strcmp(name, "job-id") && tag == IPP_TAG_INTEGER) {
        job->id = ippGetInteger(attribute, 0);
    } else if (!strcmp(name, "job-state") && tag == IPP_TAG_ENUM) {
        job->state = ipp_jstate_t(ippGetInteger(attribute, 0));
    } else if (!strcmp(name, "job-printer-uri") && tag == IPP_TAG_URI) {
        job->queue = queueOfPrinterUri(ippGetString(attribute, 0, nullptr));
    } else if (!strcmp(name, "job-name") && (tag == IPP_TAG_NAME || tag == IPP_TAG_NAMELANG)) {
        job->name = QString::fromUtf8(ippGetString(attribute, 0, nullptr));
    } else if (!strcmp(name, "job-originating-user-name") && (tag == IPP_TAG_NAME || tag == IPP_TAG_NAMELANG)) {
        job->owner = QString::fromUtf8(ippGetString(attribute, 0, nullptr));
    } else if (!strcmp(name, "job-originating-host-name") && (tag == IPP_TAG_NAME || tag == IPP_TAG_NAMELANG)) {
        job->originHost = QString::fromUtf8(ippGetString(attribute, 0, nullptr));
    } else if (!strcmp(name, "time-at-creation") && tag == IPP_TAG_INTEGER) {
        job->createdAt = ippGetInteger(attribute, 0);
    } else if (!strcmp(name, "job-state-reasons") && tag == IPP_TAG_KEYWORD) {
        for (int i = 0; i < ippGetCount(attribute); ++i)
            job->stateReasons << QString::fromUtf8(ippGetString(attribute, i, nullptr));
    }
    char value[4096];
    ippAttributeString(attribute, value, sizeof(value));
    job->attributes.insert(QString::fromUtf8(name), QString::fromUtf8(value));
}

// The job groups of an answer; a job without an id is left out.
QList<HeldJob> jobsOf(ipp_t *response)
{
    QList<HeldJob> jobs;
    std::optional<HeldJob> current;
    auto flush = [&] {
        if (current && current->id > 0)
            jobs << *current;
        current.reset();
    };
    for (ipp_attribute_t *attribute = ippFirstAttribute(response); attribute;
         attribute = ippNextAttribute(response)) {
        if (ippGetGroupTag(attribute) != IPP_TAG_JOB || !ippGetName(attribute)) {
            flush(); // a separator or another group ends a job
            continue;
        }
        if (!current)
            current.emplace();
        takeAttribute(attribute, &*current);
    }
    flush();
    return jobs;
}

void addUser(ipp_t *request)
{
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_NAME, "requesting-user-name", nullptr, cupsUser());
}

QString lastError()
{
    return QString::fromUtf8(cupsLastErrorString());
}

} // namespace

std::optional<HeldJob> fetchJob(http_t *http, int jobId, QString *error)
{
    ipp_t *request = ippNewRequest(IPP_OP_GET_JOB_ATTRIBUTES);
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_URI, "job-uri", nullptr, jobUri(jobId).constData());
    addUser(request);
    const IppPtr response(cupsDoRequest(http, request, "/"));
    if (cupsLastError() == IPP_STATUS_ERROR_NOT_FOUND) {
        *error = QStringLiteral("no job %1 on the CUPS server").arg(jobId);
        return std::nullopt;
    }
    const QList<HeldJob> jobs = response && cupsLastError() <= IPP_STATUS_OK_CONFLICTING ? jobsOf(response.get())
                                                                                         : QList<HeldJob>();
    if (jobs.size() != 1 || jobs.first().id != jobId) {
        *error = QStringLiteral("cannot read job %1: %2").arg(jobId).arg(lastError());
        return std::nullopt;
    }
    return jobs.first();
}

std::optional<QList<HeldJob>> fetchHeldJobs(http_t *http, QString *error)
{
    ipp_t *request = ippNewRequest(IPP_OP_GET_JOBS);
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_URI, "printer-uri", nullptr, "ipp://localhost/");
    addUser(request);
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "which-jobs", nullptr, "not-completed");
    ippAddBoolean(request, IPP_TAG_OPERATION, "my-jobs", 1);
    static const char *const wanted[] = { "job-id", "job-state", "job-state-reasons", "job-printer-uri", "job-name",
                                          "job-originating-user-name", "job-originating-host-name",
                                          "time-at-creation" };
    ippAddStrings(request, IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes", int(std::size(wanted)),
                  nullptr, wanted);
    const IppPtr response(cupsDoRequest(http, request, "/"));
    if (!response || cupsLastError() > IPP_STATUS_OK_CONFLICTING) {
        *error = QStringLiteral("cannot list the held jobs: %1").arg(lastError());
        return std::nullopt;
    }
    QList<HeldJob> held;
    const QString user = QString::fromUtf8(cupsUser());
    for (const HeldJob &job : jobsOf(response.get())) {
        if (job.isHeld() && job.owner == user)
            held << job;
    }
    std::sort(held.begin(), held.end(), [](const HeldJob &a, const HeldJob &b) { return a.id < b.id; });
    return held;
}

bool releaseJob(http_t *http, int jobId, const QMap<QString, QString> &ticket, QString *error)
{
    ipp_t *request = ippNewRequest(IPP_OP_SET_JOB_ATTRIBUTES);
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_URI, "job-uri", nullptr, jobUri(jobId).constData());
    addUser(request);
    // Text, so that long all-digit values are not taken for numbers; the
    // standard account attributes are names, as lp sends them.
    for (auto it = ticket.cbegin(); it != ticket.cend(); ++it)
        ippAddString(request, IPP_TAG_JOB, isAccountAttribute(it.key()) ? IPP_TAG_NAME : IPP_TAG_TEXT,
                     it.key().toUtf8().constData(), nullptr, it.value().toUtf8().constData());
    ippAddString(request, IPP_TAG_JOB, IPP_TAG_KEYWORD, "job-hold-until", nullptr, "no-hold");
    const IppPtr response(cupsDoRequest(http, request, "/"));
    if (!response || cupsLastError() > IPP_STATUS_OK_CONFLICTING) {
        *error = QStringLiteral("job %1 was not released: %2").arg(jobId).arg(lastError());
        return false;
    }
    return true;
}

bool cancelJob(http_t *http, int jobId, QString *error)
{
    ipp_t *request = ippNewRequest(IPP_OP_CANCEL_JOB);
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_URI, "job-uri", nullptr, jobUri(jobId).constData());
    addUser(request);
    const IppPtr response(cupsDoRequest(http, request, "/"));
    if (!response || cupsLastError() > IPP_STATUS_OK_CONFLICTING) {
        *error = QStringLiteral("job %1 was not cancelled: %2").arg(jobId).arg(lastError());
        return false;
    }
    return true;
}

} // namespace pdeprint
