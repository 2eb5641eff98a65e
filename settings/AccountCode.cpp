// The main code is the job's account code: what a host sends as the job's
// standard account attributes, and what it fills in from them.

#include "plugin/JpCoNuratPrintPdeQr7150kBCPDEPlugIn.h"

#include "platform/PrintSettings.h"
#include "settings/TicketKeys.h"
#include "settings/TicketText.h"
#include "settings/TicketValues.h"

QString JpCoNuratPrintPdeQr7150kBCPDEPlugIn::accountCode(const pde::PrintSettings &settings) const
{
    if (!ticketSwitch(&settings, kMainCodeCBKey))
        return QString();
    return ticketCode(&settings, kMainCodeTicketKey, pde::systemStringEncoding());
}

// Only what a restore reads: the panel's own save writes the rest of the ticket.
void JpCoNuratPrintPdeQr7150kBCPDEPlugIn::setAccountCode(pde::PrintSettings &settings, const QString &code) const
{
    unsigned char bytes[kCodeAreaSize];
    const uint32_t count = codeBytes(code, bytes);
    char hex[2 * kCodeAreaSize + 1] = {};
    if (count != 0)
        myitoa(bytes, hex, count);
    PMPrintSettingsSetValue(&settings, QString::fromLatin1(kMainCodeCBKey), QStringLiteral("1"), false);
    MyPMPrintSetAsciiCStrValue(&settings, QString::fromLatin1(kMainCodeTicketKey), hex);
}
