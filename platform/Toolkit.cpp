#include "platform/Toolkit.h"

#include "platform/FormatterValidator.h"

#include <QApplication>
#include <QHash>
#include <QIcon>
#include <QImageReader>
#include <QLineEdit>
#include <QMutex>
#include <QPalette>
#include <QPixmap>

namespace pde {

QColor blackColor()
{
    return QApplication::palette().color(QPalette::Active, QPalette::Text);
}

QColor grayColor()
{
    return QApplication::palette().color(QPalette::Disabled, QPalette::Text);
}

void setTextColor(QLineEdit *field, const QColor &color)
{
    if (!field)
        return;
    QPalette palette = field->palette();
    for (auto group : { QPalette::Active, QPalette::Inactive, QPalette::Disabled })
        palette.setColor(group, QPalette::Text, color);
    field->setPalette(palette);
}

QColor textColor(const QLineEdit *field)
{
    return field ? field->palette().color(QPalette::Active, QPalette::Text) : QColor();
}

void setEditable(QLineEdit *field, bool editable)
{
    if (field)
        field->setReadOnly(!editable);
}

void setSelectable(QLineEdit *field, bool selectable)
{
    if (!field)
        return;
    // A field that is not selectable takes neither the focus nor the mouse.
    field->setFocusPolicy(selectable ? Qt::StrongFocus : Qt::NoFocus);
    field->setAttribute(Qt::WA_TransparentForMouseEvents, !selectable);
    if (!selectable)
        field->deselect();
}

bool isSelectable(const QLineEdit *field)
{
    return field && field->focusPolicy() != Qt::NoFocus
        && !field->testAttribute(Qt::WA_TransparentForMouseEvents);
}

int tag(const QLineEdit *field)
{
    return field ? field->property("tag").toInt() : 0;
}

void setStringValue(QLineEdit *field, const QString &text)
{
    FormatterValidator::setTextUnchecked(field, text);
}

void makeFirstResponder(QWidget *widget, QWidget *responder)
{
    if (!widget)
        return;
    if (responder) {
        responder->setFocus(Qt::OtherFocusReason);
        return;
    }
    QWidget *window = widget->window();
    if (QWidget *focused = window->focusWidget())
        focused->clearFocus();
    window->setFocus(Qt::OtherFocusReason);
}

namespace {

// One icon a type code for the whole process: the pixmaps an icon renders
// are cached under the icon's identity, so a new icon for every panel would
// fill the pixmap cache with copies of the same two padlocks.
using IconCache = QHash<quint32, QIcon>;
Q_GLOBAL_STATIC(IconCache, iconCache)
Q_GLOBAL_STATIC(QMutex, iconCacheMutex)

} // namespace

QIcon iconForTypeCode(quint32 code)
{
    struct Entry { quint32 code; const char *themeName; const char *fallback; };
    static const Entry entries[] = {
        { typeCode("ulck"), "changes-allow", ":/pde/icons/changes-allow.png" },
        { typeCode("lock"), "changes-prevent", ":/pde/icons/changes-prevent.png" },
    };
    QMutexLocker lock(iconCacheMutex());
    auto cached = iconCache()->constFind(code);
    if (cached != iconCache()->cend())
        return *cached;
    for (const Entry &entry : entries) {
        if (entry.code != code)
            continue;
        // Read as PNG and nothing else: probing the file would load every
        // image plug-in Qt has.
        QImageReader reader(QString::fromLatin1(entry.fallback), "png");
        reader.setAutoDetectImageFormat(false);
        const QIcon icon = QIcon::fromTheme(QString::fromLatin1(entry.themeName),
                                            QIcon(QPixmap::fromImage(reader.read())));
        iconCache()->insert(code, icon);
        return icon;
    }
    return QIcon();
}

} // namespace pde
