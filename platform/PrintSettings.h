#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>

#include "platform/Status.h"

namespace pde {

// The job's print settings: a store of string values by key, owned by the host.
// Virtual so that a host (or a test) can observe what a panel writes.
class PrintSettings
{
public:
    virtual ~PrintSettings();

    virtual std::optional<QString> value(const QString &key) const;
    // No value removes the key.
    virtual void setValue(const QString &key, const std::optional<QString> &value);

    QStringList keys() const;
    QMap<QString, QString> values() const { return m_values; }

private:
    QMap<QString, QString> m_values;
};

} // namespace pde

// Answers noErr and the value when the key is present, kPMKeyNotFound otherwise.
OSStatus PMPrintSettingsGetValue(const pde::PrintSettings *settings, const QString &key, QString *value);
// Stores the value under the key; no value removes the key. `locked` is accepted
// for the sake of the call's shape; settings here are never locked.
OSStatus PMPrintSettingsSetValue(pde::PrintSettings *settings, const QString &key,
                                 const std::optional<QString> &value, bool locked);
