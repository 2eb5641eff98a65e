#include "host/CupsQueue.h"

#include <QFile>
#include <QFileInfo>

#include <unistd.h>

#include <utility>

namespace pdeprint {

namespace {

QString lastCupsError()
{
    return QString::fromUtf8(cupsLastErrorString());
}

} // namespace

QString cupsServerName()
{
    const QString server = QString::fromUtf8(cupsServer());
    return server.startsWith(QLatin1Char('/')) ? server : QStringLiteral("%1:%2").arg(server).arg(ippPort());
}

CupsConnection::~CupsConnection()
{
    httpClose(m_http);
}

namespace {

// Connected within `milliseconds`, or only made when that is 0.
http_t *newConnection(int milliseconds)
{
    return httpConnect2(cupsServer(), ippPort(), nullptr, AF_UNSPEC, cupsEncryption(), 1, milliseconds, nullptr);
}

constexpr int kConnectMilliseconds = 5000;

} // namespace

std::unique_ptr<CupsConnection> CupsConnection::open(QString *error)
{
    std::unique_ptr<CupsConnection> connection = openLater();
    if (!connection->connect(error))
        return nullptr;
    return connection;
}

std::unique_ptr<CupsConnection> CupsConnection::openLater()
{
    return std::unique_ptr<CupsConnection>(new CupsConnection(nullptr));
}

bool CupsConnection::connect(QString *error)
{
    if (m_http && httpGetFd(m_http) >= 0)
        return true;
    if (!m_http) // the name did not resolve before, or never tried
        m_http = newConnection(kConnectMilliseconds);
    else if (httpReconnect2(m_http, kConnectMilliseconds, nullptr) != 0)
        httpClose(std::exchange(m_http, nullptr)); // made again next time: the address may have changed
    if (!m_http) {
        *error = QStringLiteral("cannot reach the CUPS server at %1").arg(cupsServerName());
        return false;
    }
    return true;
}

void CupsConnection::hangUp()
{
    if (!m_http || httpIsEncrypted(m_http))
        return;
    if (http_t *unconnected = newConnection(0)) {
        httpClose(m_http);
        m_http = unconnected;
    }
}

bool CupsConnection::hasQueue(const pde::Printer &printer, QString *error)
{
    const QByteArray name = printer.name.toUtf8();
    const QByteArray instance = printer.instance.toUtf8();
    cups_dest_t *dest = cupsGetNamedDest(m_http, name.constData(), instance.isEmpty() ? nullptr : instance.constData());
    if (!dest) {
        *error = QStringLiteral("unknown printer \"%1\"").arg(PMPrinterGetID(&printer));
        return false;
    }
    cupsFreeDests(1, dest);
    return true;
}

std::optional<pde::Printer> CupsConnection::defaultQueue()
{
    cups_dest_t *dest = cupsGetNamedDest(m_http, nullptr, nullptr);
    if (!dest)
        return std::nullopt;
    pde::Printer printer { QString::fromUtf8(dest->name),
                           dest->instance ? QString::fromUtf8(dest->instance) : QString() };
    cupsFreeDests(1, dest);
    return printer;
}

ppd_file_t *CupsConnection::openQueuePpd(const pde::Printer &printer, QString *error)
{
    const QByteArray name = printer.name.toUtf8();
    const char *path = cupsGetPPD2(m_http, name.constData());
    if (!path) {
        *error = QStringLiteral("printer \"%1\" has no PPD: %2").arg(printer.name, lastCupsError());
        return nullptr;
    }
    const QByteArray copy(path); // cupsGetPPD2 answers a temporary file in a static buffer
    ppd_file_t *ppd = ppdOpenFile(copy.constData());
    unlink(copy.constData());
    if (!ppd) {
        *error = QStringLiteral("the PPD of printer \"%1\" cannot be read").arg(printer.name);
        return nullptr;
    }
    ppdMarkDefaults(ppd);
    return ppd;
}

int CupsConnection::submit(const pde::Printer &printer, const QString &title, const QStringList &files,
                           const JobOptions &options, QString *error)
{
    const QByteArray name = printer.name.toUtf8();
    char uri[HTTP_MAX_URI];
    httpAssembleURIf(HTTP_URI_CODING_ALL, uri, sizeof(uri), "ipp", nullptr, "localhost", ippPort(),
                     "/printers/%s", name.constData());
    ipp_t *request = ippNewRequest(IPP_OP_CREATE_JOB);
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_URI, "printer-uri", nullptr, uri);
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_NAME, "requesting-user-name", nullptr, cupsUser());
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_NAME, "job-name", nullptr, title.toUtf8().constData());

    // The dialog's and the command line's options look like lp's -o ones;
    // the panels' values are text and must not be taken for numbers.
    int optionCount = 0;
    cups_option_t *cupsOptions = nullptr;
    for (auto it = options.others.cbegin(); it != options.others.cend(); ++it) {
        if (!options.settings.contains(it.key()))
            optionCount = cupsAddOption(it.key().toUtf8().constData(), it.value().toUtf8().constData(),
                                        optionCount, &cupsOptions);
    }
    cupsEncodeOptions2(request, optionCount, cupsOptions, IPP_TAG_OPERATION);
    cupsEncodeOptions2(request, optionCount, cupsOptions, IPP_TAG_JOB);
    cupsFreeOptions(optionCount, cupsOptions);
    for (auto it = options.settings.cbegin(); it != options.settings.cend(); ++it)
        ippAddString(request, IPP_TAG_JOB, IPP_TAG_TEXT, it.key().toUtf8().constData(), nullptr,
                     it.value().toUtf8().constData());

    const QByteArray resource = QByteArray("/printers/") + name;
    ipp_t *response = cupsDoRequest(m_http, request, resource.constData());
    ipp_attribute_t *jobId = response ? ippFindAttribute(response, "job-id", IPP_TAG_INTEGER) : nullptr;
    const int job = jobId && cupsLastError() <= IPP_STATUS_OK_CONFLICTING ? ippGetInteger(jobId, 0) : 0;
    ippDelete(response);
    if (job <= 0) {
        *error = QStringLiteral("printer \"%1\" refused the job: %2").arg(printer.name, lastCupsError());
        return 0;
    }

    for (qsizetype i = 0; i < files.size(); ++i) {
        const bool last = i + 1 == files.size();
        QFile file(files[i]);
        if (!file.open(QIODevice::ReadOnly)) {
            *error = QStringLiteral("%1: %2").arg(files[i], file.errorString());
            cupsCancelJob2(m_http, name.constData(), job, 0);
            return 0;
        }
        const QByteArray document = QFileInfo(files[i]).fileName().toUtf8();
        if (cupsStartDocument(m_http, name.constData(), job, document.constData(), CUPS_FORMAT_AUTO, last)
            != HTTP_STATUS_CONTINUE) {
            *error = QStringLiteral("cannot send %1: %2").arg(files[i], lastCupsError());
            cupsCancelJob2(m_http, name.constData(), job, 0);
            return 0;
        }
        bool written = true;
        while (written && !file.atEnd()) {
            const QByteArray chunk = file.read(64 * 1024);
            written = cupsWriteRequestData(m_http, chunk.constData(), size_t(chunk.size())) == HTTP_STATUS_CONTINUE;
        }
        if (cupsFinishDocument(m_http, name.constData()) != IPP_STATUS_OK || !written) {
            *error = QStringLiteral("cannot send %1: %2").arg(files[i], lastCupsError());
            cupsCancelJob2(m_http, name.constData(), job, 0);
            return 0;
        }
    }
    return job;
}

} // namespace pdeprint
