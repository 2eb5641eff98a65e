// The one-time set-up of the controls loaded from the view description.

#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"

#include "platform/FormatterValidator.h"
#include "platform/Toolkit.h"
#include "plugin/Trace.h"
#include "ui/JpCoNuratPrintPdeQr7150kBCMyRomanFilter.h"
#include "ui/SystemIcon.h"

namespace {

constexpr qint64 kCodeCharacterLimit = 32;
constexpr QSize kPadlockSize(18, 18);

// Each field gets its own formatter; the field keeps it.
void installCodeFormatter(QLineEdit *field)
{
    auto formatter = std::make_unique<JpCoNuratPrintPdeQr7150kBCMyRomanFilter>();
    formatter->setFormat(QStringLiteral("##0"));
    formatter->SetmaxCharactersCount(kCodeCharacterLimit);
    pde::FormatterValidator::setFormatter(field, std::move(formatter));
}

} // namespace

void JpCoNuratPrintPdeQr7150kBC::initializeUI()
{
    _PDEProlog(this, "--initializeUI:");
    if (hasInited != 1) {
        if (holdButton) {
            // The unlocked padlock while off, the locked one while on.
            QIcon padlock;
            padlock.addPixmap(initWithSystemIconType(pde::typeCode("ulck")), QIcon::Normal, QIcon::Off);
            padlock.addPixmap(initWithSystemIconType(pde::typeCode("lock")), QIcon::Normal, QIcon::On);
            holdButton->setIcon(padlock);
            holdButton->setIconSize(kPadlockSize);
        }
        if (billingCodeBox)
            billingCodeBox->setTitle(localizedStringValue(billingCodeBox->title()));
        if (mainCodeCB)
            mainCodeCB->setText(localizedStringValue(mainCodeCB->text()));
        installCodeFormatter(mainCodeText);
        if (subCodeCB)
            subCodeCB->setText(localizedStringValue(subCodeCB->text()));
        installCodeFormatter(subCodeText);
        hasInited = 1;
    }
    _PDEEpilog(this, "--initializeUI:=void");
}
