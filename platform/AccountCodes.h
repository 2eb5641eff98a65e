#pragma once

#include <QString>
#include <QtPlugin>

namespace pde {

class PrintSettings;

// Optional part of a panel plug-in's root object: which of the print settings
// its panels write carry the job's account code. A host gives that code to
// the printer and the server's accounting in their standard attributes, and
// fills it in from theirs, without knowing the panels' own keys. A host finds
// it with qobject_cast on the plug-in's root object.
class AccountCodes
{
public:
    virtual ~AccountCodes() = default;

    // The account code the print settings carry, switched on; empty when
    // there is none or it is switched off.
    virtual QString accountCode(const PrintSettings &settings) const = 0;
    // Makes the print settings carry `code` as the account code, switched on,
    // so that the panels show it when they restore from them.
    virtual void setAccountCode(PrintSettings &settings, const QString &code) const = 0;
};

} // namespace pde

#define PDE_ACCOUNT_CODES_IID "pde.AccountCodes/1.0"
Q_DECLARE_INTERFACE(pde::AccountCodes, PDE_ACCOUNT_CODES_IID)
