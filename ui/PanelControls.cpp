// The panel's controls: one-time set-up, actions, enabling rules, labels.

#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"

#include "plugin/Trace.h"

void JpCoNuratPrintPdeQr7150kBC::initializeUI()
{
    _PDEProlog(this, "--initializeUI:");
    if (!hasInited)
        hasInited = true;
    _PDEEpilog(this, "--initializeUI:=void");
}

void JpCoNuratPrintPdeQr7150kBC::holdButtonProc(QObject *) { }
void JpCoNuratPrintPdeQr7150kBC::mainCodeCBProc(QObject *) { }
void JpCoNuratPrintPdeQr7150kBC::subCodeCBProc(QObject *) { }
void JpCoNuratPrintPdeQr7150kBC::mainCodeCBEnabled() { }
void JpCoNuratPrintPdeQr7150kBC::mainCodeTextEnabled() { }
void JpCoNuratPrintPdeQr7150kBC::subCodeCBEnabled() { }
void JpCoNuratPrintPdeQr7150kBC::subCodeTextEnabled() { }

QString JpCoNuratPrintPdeQr7150kBC::localizedStringValue(const QVariant &) const
{
    return QString();
}
