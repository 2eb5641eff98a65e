// The rules that grey or enable one control each. A check box counts as off
// only in state 0 (mixed counts as on); the keep button as on only in state 1.

#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"

#include "platform/ButtonState.h"
#include "ui/Hilite.h"

namespace {

bool isOff(const QAbstractButton *checkBox)
{
    return pde::buttonState(checkBox) == pde::kButtonStateOff;
}

bool isOn(const QAbstractButton *button)
{
    return pde::buttonState(button) == pde::kButtonStateOn;
}

} // namespace

void JpCoNuratPrintPdeQr7150kBC::mainCodeCBEnabled()
{
    myQr7150kBCHilite(mainCodeCB.data(), isOn(holdButton));
}

void JpCoNuratPrintPdeQr7150kBC::mainCodeTextEnabled()
{
    myQr7150kBCHilite(mainCodeText.data(), isOff(mainCodeCB) || isOn(holdButton));
}

void JpCoNuratPrintPdeQr7150kBC::subCodeCBEnabled()
{
    myQr7150kBCHilite(subCodeCB.data(), isOff(mainCodeCB) || isOn(holdButton));
}

// Looks at the sub code's own check box only: switching the main code off
// switches the sub code off too.
void JpCoNuratPrintPdeQr7150kBC::subCodeTextEnabled()
{
    myQr7150kBCHilite(subCodeText.data(), isOff(subCodeCB) || isOn(holdButton));
}
