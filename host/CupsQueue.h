#pragma once

#include <QString>
#include <QStringList>

#include <cups/cups.h>
#include <cups/ppd.h>

#include <memory>

#include "host/JobOptions.h"
#include "platform/PrintSession.h"

namespace pdeprint {

// A connection to the CUPS server ($CUPS_SERVER, client.conf, or the local one).
class CupsConnection
{
public:
    ~CupsConnection();
    CupsConnection(const CupsConnection &) = delete;
    CupsConnection &operator=(const CupsConnection &) = delete;

    // Null with a one-line reason when the server cannot be reached.
    static std::unique_ptr<CupsConnection> open(QString *error);

    // For a process that outlives the server's absences (the agent): no
    // connection yet, and no failure; connect() before the first request.
    static std::unique_ptr<CupsConnection> openLater();
    // Connects unless connected; false with a one-line reason.
    bool connect(QString *error);
    // Gives the server its client slot back between bursts of requests; the
    // next request connects again on its own. A TLS connection is kept: its
    // handshake costs the server many times a request.
    void hangUp();

    http_t *http() const { return m_http; }

    // Whether the queue exists; `error` tells why not.
    bool hasQueue(const pde::Printer &printer, QString *error);
    // The server's default queue, or nothing.
    std::optional<pde::Printer> defaultQueue();
    // The queue's PPD, opened with its defaults marked; the caller closes it.
    // Null with a reason for a queue without one.
    ppd_file_t *openQueuePpd(const pde::Printer &printer, QString *error);

    // Creates the job, sends each file and answers its id; 0 with a reason.
    int submit(const pde::Printer &printer, const QString &title, const QStringList &files,
               const JobOptions &options, QString *error);

private:
    explicit CupsConnection(http_t *http) : m_http(http) { }
    http_t *m_http;
};

// "host:port" or the socket of the server the connection goes to.
QString cupsServerName();

} // namespace pdeprint
