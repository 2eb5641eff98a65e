#pragma once

class QAbstractButton;

namespace pde {

// Button states as numbers: off, on, mixed (a tristate check box's middle state).
inline constexpr int kButtonStateOff = 0;
inline constexpr int kButtonStateOn = 1;
inline constexpr int kButtonStateMixed = -1;

// The state of a check box or a checkable button; 0 for null.
int buttonState(const QAbstractButton *button);
// Sets the state; -1 makes a check box tristate. Nothing for null.
void setButtonState(QAbstractButton *button, int state);

} // namespace pde
