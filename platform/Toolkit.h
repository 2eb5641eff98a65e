#pragma once

#include <QColor>
#include <QIcon>
#include <QtGlobal>

class QLineEdit;
class QWidget;

namespace pde {

// The toolkit's "black" and "grey" text: the theme's normal text colour and
// its disabled text colour, so that text stays readable in a dark theme.
QColor blackColor();
QColor grayColor();

// Text fields: text colour (for every colour group), editable, selectable.
// Each does nothing for null.
void setTextColor(QLineEdit *field, const QColor &color);
QColor textColor(const QLineEdit *field);
void setEditable(QLineEdit *field, bool editable);
void setSelectable(QLineEdit *field, bool selectable);
bool isSelectable(const QLineEdit *field);
// The field's "tag" property; 0 when it has none.
int tag(const QLineEdit *field);
// Sets the field's text as the program, not the user: its formatter does not
// check it.
void setStringValue(QLineEdit *field, const QString &text);

// Gives the keyboard focus of `widget`'s window to `responder`, or, for null,
// to the window itself so that no control holds it.
void makeFirstResponder(QWidget *widget, QWidget *responder);

// A four-character type code as a number, the first character in the high byte.
constexpr quint32 typeCode(const char (&code)[5])
{
    return (quint32(quint8(code[0])) << 24) | (quint32(quint8(code[1])) << 16)
        | (quint32(quint8(code[2])) << 8) | quint32(quint8(code[3]));
}
// The system icon for a type code ("ulck", "lock"), from the icon theme, or
// the image shipped with the platform when the theme has none. Null icon for
// a code without one.
QIcon iconForTypeCode(quint32 code);

} // namespace pde
