#pragma once

#include <QMap>
#include <QString>

#include <vector>

#include "host/PluginLoader.h"

namespace pde {
class PrintSettings;
}

namespace pdeprint {

// The standard job attributes that carry a job's account code beside the
// panels' own ticket: job-account-id reaches IPP printers that take one
// (through CUPS's ipp backend), job-billing the scheduler's page log and
// accounting tools. Both are IPP names.
inline constexpr char kJobAccountId[] = "job-account-id";
inline constexpr char kJobBilling[] = "job-billing";

bool isAccountAttribute(const QString &name);

// The account code the plug-ins find switched on in the print settings (the
// first that answers one); empty when none.
QString accountCodeOf(const std::vector<LoadedPlugin> &plugins, const pde::PrintSettings &settings);

// job-account-id and job-billing, both the code; nothing for an empty code.
QMap<QString, QString> accountAttributes(const QString &code);

// The code a job arrived with from an application's own dialog: its
// job-account-id, else its job-billing (the order CUPS's ipp backend uses).
// The queue's default job-account-id (`placeholder`) is no code.
QString applicationAccountCode(const QMap<QString, QString> &jobAttributes, const QString &placeholder);

// Makes the print settings carry `code` for every plug-in that takes account
// codes, so that its panels show it; nothing when the code is empty or the
// settings carry an account code already.
void seedAccountCode(const std::vector<LoadedPlugin> &plugins, pde::PrintSettings &settings, const QString &code);

} // namespace pdeprint
