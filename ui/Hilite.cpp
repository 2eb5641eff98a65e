#include "ui/Hilite.h"

#include "platform/Toolkit.h"

#include <QAbstractButton>
#include <QLineEdit>

void myQr7150kBCHilite(QAbstractButton *button, bool grey)
{
    if (button)
        button->setEnabled(!grey);
}

void myQr7150kBCHilite(QLineEdit *field, bool grey)
{
    if (!field)
        return;
    if (pde::tag(field) == 0) {
        pde::setTextColor(field, grey ? pde::grayColor() : pde::blackColor());
        return;
    }
    pde::setEditable(field, !grey);
    pde::setSelectable(field, !grey);
    pde::setTextColor(field, grey ? pde::grayColor() : pde::blackColor());
    // Null leaves the focus with the window itself, ending any editing.
    pde::makeFirstResponder(field, grey ? nullptr : field);
}
