#include "platform/Formatter.h"

namespace pde {

Formatter::~Formatter() = default;

bool Formatter::isPartialStringValid(QString *, TextRange *, const QString &, TextRange, QString *) const
{
    return true;
}

QString NumberFormatter::stringForObjectValue(const QVariant &value) const
{
    if (!value.isValid())
        return QString();
    return value.toString();
}

bool NumberFormatter::getObjectValue(QVariant *value, const QString &string, QString *error) const
{
    bool ok = false;
    const double number = string.trimmed().toDouble(&ok);
    if (!ok) {
        if (error)
            *error = QStringLiteral("not a number");
        return false;
    }
    if (value)
        *value = number;
    return true;
}

} // namespace pde
