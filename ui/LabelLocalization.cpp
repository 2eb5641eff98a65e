// Titles are written as a localisation key, optionally followed by a colon.

#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"

#include "platform/Bundle.h"

#include <QAbstractButton>

#include <optional>

namespace {

// The text of a string or of a control; none for anything else.
std::optional<QString> textOf(const QVariant &object)
{
    if (object.metaType() == QMetaType::fromType<QString>())
        return object.toString();
    if (!(object.metaType().flags() & QMetaType::PointerToQObject))
        return std::nullopt;
    QObject *control = object.value<QObject *>();
    if (auto *field = qobject_cast<QLineEdit *>(control))
        return field->text();
    if (auto *box = qobject_cast<QGroupBox *>(control))
        return box->title();
    if (auto *button = qobject_cast<QAbstractButton *>(control))
        return button->text();
    return std::nullopt;
}

} // namespace

QString JpCoNuratPrintPdeQr7150kBC::localizedStringValue(const QVariant &object) const
{
    const std::optional<QString> found = textOf(object);
    if (!found)
        return QString();
    // The fallback is a copy of the text, empty rather than null for a
    // control without one.
    const QString text = found->isNull() ? QStringLiteral("") : *found;
    if (text.isEmpty())
        return text;

    // Leading blanks and line breaks are skipped; the key runs up to the first colon.
    qsizetype start = 0;
    while (start < text.size() && text.at(start).isSpace())
        ++start;
    const qsizetype colon = text.indexOf(QLatin1Char(':'), start);
    const QString key = text.mid(start, colon < 0 ? -1 : colon - start);
    if (key.isEmpty())
        return text;

    QString localized = pdeBundle ? pdeBundle->localizedStringForKey(key, QString()) : key;
    if (colon >= 0)
        localized += QLatin1Char(':');
    return localized;
}
