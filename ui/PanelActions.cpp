// The actions of the keep button and the two check boxes. They work on the
// panel's own controls, never on the sender.

#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"

#include "platform/ButtonState.h"
#include "platform/Toolkit.h"

void JpCoNuratPrintPdeQr7150kBC::holdButtonProc(QObject *)
{
    mainCodeCBEnabled();
    mainCodeTextEnabled();
    subCodeCBEnabled();
    subCodeTextEnabled();
}

void JpCoNuratPrintPdeQr7150kBC::mainCodeCBProc(QObject *)
{
    // The sub code's text stays, greyed, until its own check box goes off.
    if (pde::buttonState(mainCodeCB) == pde::kButtonStateOff) {
        pde::setStringValue(mainCodeText, QString());
        pde::setButtonState(subCodeCB, pde::kButtonStateOff);
    }
    subCodeCBEnabled();
    subCodeTextEnabled();
    // Last, so that a usable main code field ends up with the focus.
    mainCodeTextEnabled();
}

void JpCoNuratPrintPdeQr7150kBC::subCodeCBProc(QObject *)
{
    if (pde::buttonState(subCodeCB) == pde::kButtonStateOff)
        pde::setStringValue(subCodeText, QString());
    subCodeTextEnabled();
}
