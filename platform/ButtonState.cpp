#include "platform/ButtonState.h"

#include <QAbstractButton>
#include <QCheckBox>

namespace pde {

int buttonState(const QAbstractButton *button)
{
    if (!button)
        return kButtonStateOff;
    if (auto *box = qobject_cast<const QCheckBox *>(button)) {
        switch (box->checkState()) {
        case Qt::Checked: return kButtonStateOn;
        case Qt::PartiallyChecked: return kButtonStateMixed;
        case Qt::Unchecked: return kButtonStateOff;
        }
    }
    return button->isChecked() ? kButtonStateOn : kButtonStateOff;
}

void setButtonState(QAbstractButton *button, int state)
{
    if (!button)
        return;
    if (auto *box = qobject_cast<QCheckBox *>(button)) {
        if (state == kButtonStateMixed) {
            box->setTristate(true);
            box->setCheckState(Qt::PartiallyChecked);
        } else {
            box->setCheckState(state == kButtonStateOff ? Qt::Unchecked : Qt::Checked);
        }
        return;
    }
    button->setChecked(state != kButtonStateOff);
}

} // namespace pde
