#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>

namespace pdeprint {

class CupsConnection;

// The parts of cupsd.conf the check reads.
struct ServerConfig
{
    struct Limit
    {
        QStringList operations; // lower case; "all" for <Limit All>
        QString authType;       // empty: not set, which is none
        bool requiresUser = false; // a Require line
    };
    struct Policy
    {
        QStringList privateAccess; // JobPrivateAccess words; empty: not set
        QStringList privateValues; // JobPrivateValues words; empty: not set
        QList<Limit> limits;       // in order: the first naming an operation governs it
    };
    QMap<QString, Policy> policies;     // by lower-case name, as cupsd matches them
    QMap<QString, QString> directives; // outside any block, by lower-case name; the last wins
};

ServerConfig parseServerConfig(const QByteArray &text);

// The server's cupsd.conf: the file itself when the server is this machine's
// and the file is readable, else through the scheduler's admin resource,
// which wants an administrator. Nothing, with the reason, when neither works.
std::optional<ServerConfig> readServerConfig(CupsConnection &cups, QString *why);

} // namespace pdeprint
