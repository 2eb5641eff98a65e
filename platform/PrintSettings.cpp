#include "platform/PrintSettings.h"

namespace pde {

PrintSettings::~PrintSettings() = default;

std::optional<QString> PrintSettings::value(const QString &key) const
{
    auto it = m_values.constFind(key);
    if (it == m_values.cend())
        return std::nullopt;
    return *it;
}

void PrintSettings::setValue(const QString &key, const std::optional<QString> &value)
{
    if (value)
        m_values.insert(key, *value);
    else
        m_values.remove(key);
}

QStringList PrintSettings::keys() const
{
    return m_values.keys();
}

} // namespace pde

OSStatus PMPrintSettingsGetValue(const pde::PrintSettings *settings, const QString &key, QString *value)
{
    if (!settings || !value)
        return kPMInvalidParameter;
    auto found = settings->value(key);
    if (!found)
        return kPMKeyNotFound;
    *value = *found;
    return noErr;
}

OSStatus PMPrintSettingsSetValue(pde::PrintSettings *settings, const QString &key,
                                 const std::optional<QString> &value, bool /*locked*/)
{
    if (!settings)
        return kPMInvalidParameter;
    settings->setValue(key, value);
    return noErr;
}
