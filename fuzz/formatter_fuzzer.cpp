// The code formatter's edit check with any proposal and any ranges, and a
// real code field edited at random through its validator.

#include "fuzz/FuzzSupport.h"
#include "platform/FormatterValidator.h"
#include "ui/JpCoNuratPrintPdeQr7150kBCMyRomanFilter.h"

#include <QCoreApplication>
#include <QLineEdit>

namespace {

using pdefuzz::anyText;

pde::TextRange anyRange(FuzzedDataProvider &in)
{
    return { in.ConsumeIntegralInRange<qsizetype>(-4, 80), in.ConsumeIntegralInRange<qsizetype>(-4, 80) };
}

void checkEditRule(FuzzedDataProvider &in)
{
    JpCoNuratPrintPdeQr7150kBCMyRomanFilter formatter;
    const qint64 limit = in.ConsumeIntegralInRange<qint64>(-2, 40);
    formatter.SetmaxCharactersCount(limit);
    QString partial = anyText(in, 120);
    pde::TextRange selection = anyRange(in);
    const QString original = anyText(in, 120);
    const pde::TextRange originalSelection = anyRange(in);
    const pde::TextRange proposed = selection;
    const bool accepted = formatter.isPartialStringValid(&partial, &selection, original, originalSelection, nullptr);
    // A proposal cut to the limit is answered with all of it selected.
    if (!accepted && selection != proposed && (selection.location != 0 || quint64(partial.size()) > quint64(limit)))
        __builtin_trap();
}

// Typing over any selection, deleting and undoing, as a user edits the field.
void editField(FuzzedDataProvider &in)
{
    QLineEdit field;
    auto formatter = std::make_unique<JpCoNuratPrintPdeQr7150kBCMyRomanFilter>();
    formatter->SetmaxCharactersCount(in.ConsumeIntegralInRange<qint64>(0, 40));
    pde::FormatterValidator::setFormatter(&field, std::move(formatter));
    for (int step = 0; step < 16 && in.remaining_bytes() > 0; ++step) {
        const int length = int(field.text().size());
        field.setSelection(in.ConsumeIntegralInRange(0, length), in.ConsumeIntegralInRange(-length, length));
        switch (in.ConsumeIntegralInRange(0, 2)) {
        case 0: field.insert(anyText(in, 60)); break;
        case 1: field.backspace(); break;
        case 2: field.undo(); break;
        }
        QCoreApplication::processEvents();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider in(data, size);
    if (in.ConsumeBool())
        checkEditRule(in);
    else
        editField(in);
    return 0;
}
