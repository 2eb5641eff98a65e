#pragma once

// Greying of the panel's controls. `grey` true makes the control unusable.

class QAbstractButton;
class QLineEdit;

// Disables or enables the button.
void myQr7150kBCHilite(QAbstractButton *button, bool grey);

// An entry field (non-zero tag) becomes read-only and unselectable in grey and
// gives up the focus, or editable in black and takes the focus. A label (tag 0)
// only changes colour. The field's enabled state is left alone.
void myQr7150kBCHilite(QLineEdit *field, bool grey);
