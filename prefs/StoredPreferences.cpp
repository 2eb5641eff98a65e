// The per-queue record of codes, check boxes and keep state in the user's
// preferences. The domain must exist already: the panel never creates one.

#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"

#include "platform/ButtonState.h"
#include "platform/UserDefaults.h"
#include "prefs/PreferenceKeys.h"

namespace {

// A fresh look at the store, not a cache kept since an earlier call.
std::shared_ptr<pde::UserDefaults> freshDefaults()
{
    pde::UserDefaults::resetStandardUserDefaults();
    return pde::UserDefaults::standardUserDefaults();
}

bool isOn(const QAbstractButton *button)
{
    return pde::buttonState(button) == pde::kButtonStateOn;
}

// The first release stored the record as text ("true", "1"). Its check boxes
// and keep value get their types back at the first rewrite, so that other
// readers of the record need not guess.
void restoreTypes(QVariantMap &record)
{
    for (const char *key : { kMainCodeCheckBoxKey, kSubCodeCheckBoxKey }) {
        const auto value = record.find(QString::fromLatin1(key));
        if (value != record.end() && value->typeId() == QMetaType::QString)
            *value = value->toBool();
    }
    const auto hold = record.find(QString::fromLatin1(kHoldButtonKey));
    if (hold != record.end() && hold->typeId() == QMetaType::QString)
        *hold = hold->toInt();
}

} // namespace

void JpCoNuratPrintPdeQr7150kBC::CheckPreference()
{
    const auto defaults = freshDefaults();
    if (!defaults)
        return;
    std::optional<QVariantMap> domain = defaults->persistentDomainForName(preferenceName);
    if (!domain)
        return;
    QVariantMap record = domain->value(QString::fromLatin1(kRecordKey)).toMap();

    const QString modelKey = QString::fromLatin1(kModelNameKey);
    const QString releaseKey = QString::fromLatin1(kReleaseNumberKey);
    const bool valid = record.contains(modelKey) && record.value(modelKey).toString() == modelStringRef
        && record.contains(releaseKey) && record.value(releaseKey).toString() == QLatin1String(kReleaseNumber);
    if (!valid) {
        record.insert(modelKey, modelStringRef);
        record.insert(releaseKey, QString::fromLatin1(kReleaseNumber));
        record.insert(QString::fromLatin1(kMainCodeCheckBoxKey), false);
        record.remove(QString::fromLatin1(kMainCodeKey));
        record.insert(QString::fromLatin1(kSubCodeCheckBoxKey), false);
        record.remove(QString::fromLatin1(kSubCodeKey));
        record.remove(QString::fromLatin1(kHoldButtonKey));
    }
    restoreTypes(record);

    domain->insert(QString::fromLatin1(kRecordKey), record);
    defaults->setPersistentDomain(*domain, preferenceName);
    defaults->synchronize();
}

void JpCoNuratPrintPdeQr7150kBC::GetUserPreference()
{
    prefHoldButtonFlag = 0;
    prefMainCodeCBBooleanRef.clear();
    prefMainCodeStringRef.clear();
    prefSubCodeCBBooleanRef.clear();
    prefSubCodeStringRef.clear();

    const auto defaults = freshDefaults();
    if (!defaults)
        return;
    const std::optional<QVariantMap> domain = defaults->persistentDomainForName(preferenceName);
    if (!domain)
        return;
    const QVariant recordValue = domain->value(QString::fromLatin1(kRecordKey));
    if (recordValue.typeId() != QMetaType::QVariantMap)
        return;
    const QVariantMap record = recordValue.toMap();

    qint32 hold = 0;
    if (record.contains(QString::fromLatin1(kHoldButtonKey)))
        hold = record.value(QString::fromLatin1(kHoldButtonKey)).toInt();
    prefHoldButtonFlag = quint32(hold);

    prefMainCodeCBBooleanRef = record.value(QString::fromLatin1(kMainCodeCheckBoxKey));
    prefMainCodeStringRef = record.value(QString::fromLatin1(kMainCodeKey));
    prefSubCodeCBBooleanRef = record.value(QString::fromLatin1(kSubCodeCheckBoxKey));
    prefSubCodeStringRef = record.value(QString::fromLatin1(kSubCodeKey));
}

bool JpCoNuratPrintPdeQr7150kBC::SaveUserPreference()
{
    qint32 keep = 0;
    const auto defaults = freshDefaults();
    if (!defaults)
        return false;
    std::optional<QVariantMap> domain = defaults->persistentDomainForName(preferenceName);
    if (!domain)
        return false;
    QVariantMap record = domain->value(QString::fromLatin1(kRecordKey)).toMap();

    record.insert(QString::fromLatin1(kMainCodeCheckBoxKey), isOn(mainCodeCB));
    if (mainCodeText)
        record.insert(QString::fromLatin1(kMainCodeKey), mainCodeText->text());
    record.insert(QString::fromLatin1(kSubCodeCheckBoxKey), isOn(subCodeCB));
    if (subCodeText)
        record.insert(QString::fromLatin1(kSubCodeKey), subCodeText->text());
    if (isOn(holdButton))
        keep = 1;
    record.insert(QString::fromLatin1(kHoldButtonKey), keep);

    domain->insert(QString::fromLatin1(kRecordKey), record);
    defaults->setPersistentDomain(*domain, preferenceName);
    return defaults->synchronize();
}
