// The job ticket: restore the controls from the print settings, save them back.

#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"

#include "plugin/Trace.h"

void JpCoNuratPrintPdeQr7150kBC::getNonPPDSettingsFromPrintSettings()
{
    _PDEProlog(this, "--getNonPPDSettingsFromPrintSettings:");
    _PDEEpilog(this, "--getNonPPDSettingsFromPrintSettings:");
}

void JpCoNuratPrintPdeQr7150kBC::writeNonPPDSettingsToPrintSettings()
{
    _PDEProlog(this, "--writeNonPPDSettingsToPrintSettings:");
    _PDEEpilog(this, "--writeNonPPDSettingsToPrintSettings:");
}
