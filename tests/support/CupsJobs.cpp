#include "tests/support/CupsJobs.h"

#include <QProcess>
#include <QRegularExpression>

namespace pdetest {

int lp(const char *queue, const char *user, const QStringList &options)
{
    QStringList arguments = QStringList { "-d", queue } + options;
    if (user)
        arguments << "-U" << user;
    QProcess process;
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(QStringLiteral("lp"), arguments << QStringLiteral(PDE_SOURCE_DIR "/examples/sample.txt"));
    process.waitForFinished(30000);
    return jobIdIn(QString::fromUtf8(process.readAllStandardOutput()));
}

int jobIdIn(const QString &text)
{
    return QRegularExpression(QStringLiteral("request id is [\\w/]+-(\\d+)")).match(text).captured(1).toInt();
}

QMap<QString, QString> jobAttributes(int jobId, const char *user)
{
    ipp_t *request = ippNewRequest(IPP_OP_GET_JOB_ATTRIBUTES);
    const QByteArray uri = "ipp://localhost/jobs/" + QByteArray::number(jobId);
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_URI, "job-uri", nullptr, uri.constData());
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_NAME, "requesting-user-name", nullptr, user ? user : cupsUser());
    ipp_t *response = cupsDoRequest(CUPS_HTTP_DEFAULT, request, "/");
    QMap<QString, QString> attributes;
    for (ipp_attribute_t *attribute = ippFirstAttribute(response); attribute; attribute = ippNextAttribute(response)) {
        char value[1024] = "";
        if (ippGetName(attribute) && ippGetGroupTag(attribute) == IPP_TAG_JOB) {
            ippAttributeString(attribute, value, sizeof(value));
            attributes.insert(QString::fromUtf8(ippGetName(attribute)), QString::fromUtf8(value));
        }
    }
    ippDelete(response);
    return attributes;
}

ipp_jstate_t jobState(int jobId)
{
    const QByteArray state = jobAttributes(jobId).value(QStringLiteral("job-state")).toUtf8();
    return state.isEmpty() ? ipp_jstate_t(0) : ipp_jstate_t(ippEnumValue("job-state", state.constData()));
}

} // namespace pdetest
