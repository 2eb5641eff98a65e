#include "host/check/ServerConfig.h"

#include "host/CupsQueue.h"

#include <QFile>
#include <QTemporaryFile>

namespace pdeprint {

ServerConfig parseServerConfig(const QByteArray &text)
{
    ServerConfig config;
    ServerConfig::Policy *policy = nullptr;
    ServerConfig::Limit *limit = nullptr; // a <Limit> of that policy
    int depth = 0; // blocks open: <Location>, <Policy>, <Limit>
    for (const QByteArray &raw : text.split('\n')) {
        const QString line = QString::fromUtf8(raw).trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        if (line.startsWith(QLatin1String("</"))) {
            if (--depth == 0)
                policy = nullptr;
            limit = nullptr;
            continue;
        }
        if (line.startsWith(QLatin1Char('<'))) {
            if (++depth == 1 && line.startsWith(QLatin1String("<Policy "), Qt::CaseInsensitive)) {
                policy = &config.policies[line.mid(8).chopped(1).trimmed().toLower()];
            } else if (depth == 2 && policy && line.startsWith(QLatin1String("<Limit "), Qt::CaseInsensitive)) {
                policy->limits.append({ line.mid(7).chopped(1).toLower().split(QLatin1Char(' '), Qt::SkipEmptyParts), {}, false });
                limit = &policy->limits.last();
            }
            continue;
        }
        const qsizetype blank = line.indexOf(QLatin1Char(' '));
        const QString name = (blank < 0 ? line : line.left(blank)).toLower();
        const QString value = blank < 0 ? QString() : line.mid(blank + 1).trimmed();
        const QStringList words = value.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        if (depth == 0)
            config.directives.insert(name, value);
        else if (policy && depth == 1 && name == QLatin1String("jobprivateaccess"))
            policy->privateAccess << words;
        else if (policy && depth == 1 && name == QLatin1String("jobprivatevalues"))
            policy->privateValues << words;
        else if (limit && name == QLatin1String("authtype"))
            limit->authType = value.toLower();
        else if (limit && name == QLatin1String("require"))
            limit->requiresUser = true;
    }
    return config;
}

std::optional<ServerConfig> readServerConfig(CupsConnection &cups, QString *why)
{
    // The server's own name, without the port that cupsServerName() adds.
    const QString server = QString::fromUtf8(cupsServer());
    if (server.startsWith(QLatin1Char('/')) || server == QLatin1String("localhost")) {
        QFile file(qEnvironmentVariable("CUPS_SERVERROOT", QStringLiteral("/etc/cups")) + QStringLiteral("/cupsd.conf"));
        if (file.open(QIODevice::ReadOnly))
            return parseServerConfig(file.readAll());
    }
    QTemporaryFile copy;
    if (!copy.open()) {
        *why = copy.errorString();
        return std::nullopt;
    }
    // An administrator is one already; a password prompt would stop a script.
    cupsSetPasswordCB2([](const char *, http_t *, const char *, const char *, void *) -> const char * { return nullptr; },
                       nullptr);
    const http_status_t status = cupsGetFd(cups.http(), "/admin/conf/cupsd.conf", copy.handle());
    if (status != HTTP_STATUS_OK) {
        *why = QString::fromUtf8(httpStatus(status));
        return std::nullopt;
    }
    copy.seek(0);
    return parseServerConfig(copy.readAll());
}

} // namespace pdeprint
