// Restore, save and print from print settings with any keys and values, and
// from any pending stored values.

#include "fuzz/FuzzSupport.h"
#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"
#include "settings/TicketKeys.h"

using pdefuzz::anyText;

const char *const kTicketKeys[] = { kSpoolTimeKey, kMainCodeCBKey, kMainCodeTicketKey, kMainCodeCipherKey,
                                    kSubCodeCBKey, kSubCodeTicketKey, kSubCodeCipherKey, kHoldButtonTicketKey };

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider in(data, size);
    const auto callback = pdefuzz::makeCallback();
    JpCoNuratPrintPdeQr7150kBC panel(callback);

    panel.prefHoldButtonFlag = in.ConsumeIntegral<quint32>();
    if (in.ConsumeBool())
        panel.prefMainCodeCBBooleanRef = in.ConsumeBool();
    if (in.ConsumeBool())
        panel.prefMainCodeStringRef = anyText(in, 600);
    if (in.ConsumeBool())
        panel.prefSubCodeCBBooleanRef = anyText(in, 600);
    if (in.ConsumeBool())
        panel.prefSubCodeStringRef = anyText(in, 600);

    while (in.remaining_bytes() > 0) {
        const QString key = in.ConsumeBool() ? QString::fromLatin1(in.PickValueInArray(kTicketKeys)) : anyText(in, 600);
        callback->settings.setValue(key, anyText(in, 600));
    }

    panel.panelView();
    panel.restoreValuesAndReturnError(nullptr);
    panel.saveValuesAndReturnError(nullptr);
    panel.shouldPrint();
    panel.summaryInfo();
    return 0;
}
