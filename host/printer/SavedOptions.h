#pragma once

#include <QList>
#include <QString>

#include <cups/cups.h>

#include <utility>

#include "platform/PrintSession.h"

namespace pdeprint {

// The options lp would send to the queue or instance before its own: the
// server's defaults and the user's lpoptions (~/.cups/lpoptions), in the order
// libcups answers them, without the attributes that describe the printer.
// Empty when the destination is unknown.
QList<std::pair<QString, QString>> savedOptions(http_t *http, const pde::Printer &printer);

} // namespace pdeprint
