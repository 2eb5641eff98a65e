// The per-queue record of codes, check boxes and keep state in the user's preferences.

#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"

void JpCoNuratPrintPdeQr7150kBC::CheckPreference() { }
void JpCoNuratPrintPdeQr7150kBC::GetUserPreference() { }
bool JpCoNuratPrintPdeQr7150kBC::SaveUserPreference() { return false; }
