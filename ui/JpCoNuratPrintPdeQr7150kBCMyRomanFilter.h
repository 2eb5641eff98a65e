#pragma once

#include "platform/Formatter.h"

// The formatter of a code field: the field's value is the typed text itself,
// and edits are limited by length only, whatever the characters.
class JpCoNuratPrintPdeQr7150kBCMyRomanFilter : public pde::NumberFormatter
{
public:
    // Stored as given; read as an unsigned count.
    void SetmaxCharactersCount(qint64 count);

    // The value's text; null for no value.
    QString stringForObjectValue(const QVariant &value) const override;
    // Always succeeds with the text itself. `value` must not be null.
    bool getObjectValue(QVariant *value, const QString &string, QString *error) const override;
    bool isPartialStringValid(QString *partial, pde::TextRange *proposedSelection,
                              const QString &original, pde::TextRange originalSelection,
                              QString *error) const override;

    qint64 maxValue = 0;
};
