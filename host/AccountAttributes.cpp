#include "host/AccountAttributes.h"

#include "platform/AccountCodes.h"

namespace pdeprint {

bool isAccountAttribute(const QString &name)
{
    return name == QLatin1String(kJobAccountId) || name == QLatin1String(kJobBilling);
}

QString accountCodeOf(const std::vector<LoadedPlugin> &plugins, const pde::PrintSettings &settings)
{
    for (const LoadedPlugin &plugin : plugins) {
        if (!plugin.accountCodes)
            continue;
        if (QString code = plugin.accountCodes->accountCode(settings); !code.isEmpty())
            return code;
    }
    return QString();
}

QMap<QString, QString> accountAttributes(const QString &code)
{
    if (code.isEmpty())
        return {};
    return { { QString::fromLatin1(kJobAccountId), code }, { QString::fromLatin1(kJobBilling), code } };
}

QString applicationAccountCode(const QMap<QString, QString> &jobAttributes, const QString &placeholder)
{
    const QString accountId = jobAttributes.value(QString::fromLatin1(kJobAccountId));
    if (!accountId.isEmpty() && accountId != placeholder)
        return accountId;
    return jobAttributes.value(QString::fromLatin1(kJobBilling));
}

void seedAccountCode(const std::vector<LoadedPlugin> &plugins, pde::PrintSettings &settings, const QString &code)
{
    if (code.isEmpty() || !accountCodeOf(plugins, settings).isEmpty())
        return;
    for (const LoadedPlugin &plugin : plugins) {
        if (plugin.accountCodes)
            plugin.accountCodes->setAccountCode(settings, code);
    }
}

} // namespace pdeprint
