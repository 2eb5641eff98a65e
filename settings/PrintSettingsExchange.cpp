// The job ticket: restore the controls from the print settings (or, once,
// from the stored preferences), and save them back with the encrypted copies.

#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"

#include "platform/ButtonState.h"
#include "platform/PluginCallback.h"
#include "platform/PrintSettings.h"
#include "platform/StringEncoding.h"
#include "platform/Toolkit.h"
#include "plugin/Trace.h"
#include "settings/CodeCipher.h"
#include "settings/TicketKeys.h"
#include "settings/TicketText.h"
#include "settings/TicketValues.h"

#include <cstring>
#include <limits>
#include <optional>

namespace {

// Working buffers of one exchange.
constexpr size_t kSpoolTimeSize = 64;
constexpr size_t kCipherSize = 512;
constexpr size_t kDecodedSize = 512;
constexpr size_t kBase64Size = 685; // Base64 of the whole cipher buffer and a terminator
// A stamp shorter than the key or longer than its buffer is not ours.
constexpr size_t kMinSpoolTimeLength = 16;

// Restores one code field, from the stored preferences when they are pending.
void restoreCode(const pde::PrintSettings *settings, bool pending, const QVariant &stored, const char *key,
                 QLineEdit *field, pde::StringEncoding encoding)
{
    if (pending) {
        if (stored.isValid())
            pde::setStringValue(field, stored.toString());
        return;
    }
    pde::setStringValue(field, ticketCode(settings, key, encoding));
}

// The stamp the ticket carries, or a new one stored in it. The buffer holds
// the plain, terminated stamp afterwards.
void spoolTimeOfTicket(pde::PrintSettings *settings, char (&stamp)[kSpoolTimeSize])
{
    std::memset(stamp, 0, sizeof stamp);
    if (const std::optional<QByteArray> hex = ticketValue(settings, kSpoolTimeKey)) {
        char text[kTicketTextSize] = {};
        std::memcpy(text, hex->constData(), size_t(hex->size()));
        unsigned char decoded[kDecodedSize] = {};
        myatoi(text, decoded, uint32_t(std::strlen(text)));
        const size_t length = std::strlen(reinterpret_cast<const char *>(decoded));
        if (length >= kMinSpoolTimeLength && length < kSpoolTimeSize) {
            std::memcpy(stamp, decoded, length);
            return;
        }
    }
    const int length = GetSpoolTime(stamp);
    char hex[kSpoolTimeSize * 2 + 1] = {};
    myitoa(reinterpret_cast<const unsigned char *>(stamp), hex, uint32_t(length));
    MyPMPrintSetAsciiCStrValue(settings, QString::fromLatin1(kSpoolTimeKey), hex);
}

void writeSwitch(pde::PrintSettings *settings, const char *key, const QAbstractButton *button)
{
    const bool on = pde::buttonState(button) == pde::kButtonStateOn;
    PMPrintSettingsSetValue(settings, QString::fromLatin1(key), QString::number(on ? 1 : 0), false);
}

// Writes a code as hex text of its bytes in the system encoding, and its
// encrypted copy under the stamp; an empty code removes both keys.
void writeCode(pde::PrintSettings *settings, const QLineEdit *field, const char *codeKey, const char *cipherKey,
               const char *stamp)
{
    unsigned char code[kCodeAreaSize] = {};
    const uint32_t count = field ? codeBytes(field->text(), code) : 0;
    char hex[kCipherSize] = {};
    if (count != 0)
        myitoa(code, hex, count);
    MyPMPrintSetAsciiCStrValue(settings, QString::fromLatin1(codeKey), hex);

    std::memset(hex, 0, sizeof hex);
    char base64[kBase64Size] = {};
    if (count != 0) {
        unsigned char *cipher = reinterpret_cast<unsigned char *>(hex);
        my_aes_encrypt2(code, reinterpret_cast<const unsigned char *>(stamp), cipher, kCipherSize);
        const size_t blocks = (std::strlen(reinterpret_cast<const char *>(code)) + 15) & ~size_t(15);
        Base64encode(base64, hex, int32_t(blocks));
    }
    MyPMPrintSetAsciiCStrValue(settings, QString::fromLatin1(cipherKey), base64);
}

} // namespace

void JpCoNuratPrintPdeQr7150kBC::getNonPPDSettingsFromPrintSettings()
{
    _PDEProlog(this, "--getNonPPDSettingsFromPrintSettings:");
    pde::PrintSettings *settings = pdePluginCallbackObject ? pdePluginCallbackObject->printSettings() : nullptr;
    if (!settings) {
        _PDEEpilog(this, "--getNonPPDSettingsFromPrintSettings:");
        return;
    }

    presetHoldButtonFlag = quint32(ticketInteger(settings, kHoldButtonTicketKey).value_or(0));

    const bool pending = prefHoldButtonFlag & 1;

    int holdTarget = pde::kButtonStateOff;
    bool mainOn = false;
    if (pending) {
        holdTarget = pde::kButtonStateOn;
        mainOn = prefMainCodeCBBooleanRef.isValid() && prefMainCodeCBBooleanRef.toBool();
    } else {
        holdTarget = (presetHoldButtonFlag & 1) ? pde::kButtonStateOn : pde::kButtonStateOff;
        mainOn = ticketSwitch(settings, kMainCodeCBKey);
    }
    pde::setButtonState(mainCodeCB, mainOn ? pde::kButtonStateOn : pde::kButtonStateOff);
    restoreCode(settings, pending, prefMainCodeStringRef, kMainCodeTicketKey, mainCodeText, systemEncoding);

    // Unlike the main check box, a pending record without a sub check-box
    // value leaves the ticket's value in force.
    const bool subOn = pending && prefSubCodeCBBooleanRef.isValid() ? prefSubCodeCBBooleanRef.toBool()
                                                                     : ticketSwitch(settings, kSubCodeCBKey);
    pde::setButtonState(subCodeCB, subOn ? pde::kButtonStateOn : pde::kButtonStateOff);
    restoreCode(settings, pending, prefSubCodeStringRef, kSubCodeTicketKey, subCodeText, systemEncoding);

    pde::setButtonState(holdButton, holdTarget);

    subCodeCBProc(subCodeCB);
    mainCodeCBProc(mainCodeCB);
    holdButtonProc(holdButton);

    // The stored record fills the panel once per load.
    if (prefHoldButtonFlag & 1)
        prefHoldButtonFlag &= ~quint32(1);
    _PDEEpilog(this, "--getNonPPDSettingsFromPrintSettings:");
}

void JpCoNuratPrintPdeQr7150kBC::writeNonPPDSettingsToPrintSettings()
{
    _PDEProlog(this, "--writeNonPPDSettingsToPrintSettings:");
    pde::PrintSettings *settings = pdePluginCallbackObject ? pdePluginCallbackObject->printSettings() : nullptr;
    if (!settings || !hasInited) {
        _PDEEpilog(this, "--writeNonPPDSettingsToPrintSettings:");
        return;
    }

    char stamp[kSpoolTimeSize];
    spoolTimeOfTicket(settings, stamp);

    writeSwitch(settings, kMainCodeCBKey, mainCodeCB);
    writeCode(settings, mainCodeText, kMainCodeTicketKey, kMainCodeCipherKey, stamp);
    writeSwitch(settings, kSubCodeCBKey, subCodeCB);
    writeCode(settings, subCodeText, kSubCodeTicketKey, kSubCodeCipherKey, stamp);
    if (holdButton)
        writeSwitch(settings, kHoldButtonTicketKey, holdButton);

    _PDEEpilog(this, "--writeNonPPDSettingsToPrintSettings:");
}
