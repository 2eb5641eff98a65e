#include "ui/JpCoNuratPrintPdeQr7150kBCMyRomanFilter.h"

#include <QDebug>

void JpCoNuratPrintPdeQr7150kBCMyRomanFilter::SetmaxCharactersCount(qint64 count)
{
    maxValue = count;
}

QString JpCoNuratPrintPdeQr7150kBCMyRomanFilter::stringForObjectValue(const QVariant &value) const
{
    if (!value.isValid())
        return QString();
    if (value.canConvert<QString>())
        return value.toString();
    // Values without a text of their own are described as the debug output does.
    QString description;
    QDebug(&description).nospace().noquote() << value;
    return description;
}

bool JpCoNuratPrintPdeQr7150kBCMyRomanFilter::getObjectValue(QVariant *value, const QString &string,
                                                           QString *) const
{
    *value = string;
    return true;
}

bool JpCoNuratPrintPdeQr7150kBCMyRomanFilter::isPartialStringValid(QString *partial,
                                                                 pde::TextRange *proposedSelection,
                                                                 const QString &original,
                                                                 pde::TextRange originalSelection,
                                                                 QString *) const
{
    const quint64 limit = quint64(maxValue);

    // The caret went past the limit: offer the first `limit` characters, all selected.
    if (quint64(proposedSelection->location) > limit) {
        *proposedSelection = { 0, qsizetype(maxValue) };
        *partial = partial->left(qsizetype(maxValue));
        return false;
    }

    // A caret that moved back (a deletion) inserted nothing.
    const qsizetype insertedCount = proposedSelection->location - originalSelection.location;
    if (insertedCount <= 0)
        return true;
    const QString inserted = partial->mid(originalSelection.location, insertedCount);
    if (inserted.isEmpty())
        return true;

    // Measured on the text before the edit, so a field may end up longer than the limit.
    return quint64(original.size()) < limit;
}
