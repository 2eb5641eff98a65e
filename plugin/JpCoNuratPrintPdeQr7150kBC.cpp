// The panel's host-facing operations: creation, the panel protocol, teardown.

#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"

#include "platform/Bundle.h"
#include "platform/ButtonState.h"
#include "platform/ConstraintHandling.h"
#include "platform/PluginCallback.h"
#include "platform/PrintSession.h"
#include "platform/StringEncoding.h"
#include "plugin/HostUtilities.h"
#include "plugin/Trace.h"
#include "prefs/PreferenceKeys.h"

namespace {

constexpr char kPanelNameKey[] = "Billing Code";
constexpr char kPanelKind[] = "jp.co.nurat.print.pde.qr7150k.BillingCodeKind";
constexpr char kViewDescription[] = "BillingCode";

const char *yesNo(bool value)
{
    return value ? "YES" : "NO";
}

} // namespace

JpCoNuratPrintPdeQr7150kBC::JpCoNuratPrintPdeQr7150kBC(std::shared_ptr<pde::PluginCallback> callback)
{
    _PDEProlog(this, "initWithCallback:(%@, %p)", callback, callback);

    thePDEName = QString();
    ppd = nullptr;
    hasInited = false;
    callRestoreValuesFunction = false;
    callSaveValuesFunction = false;
    prefHoldButtonFlag = 0;
    prefMainCodeCBBooleanRef.clear();
    prefMainCodeStringRef.clear();
    prefSubCodeCBBooleanRef.clear();
    prefSubCodeStringRef.clear();

    pdePluginCallbackObject = std::move(callback);
    pdeBundle = pde::Bundle::bundleForClass(&staticMetaObject);

    useConstraintHandling = dynamic_cast<pde::ConstraintHandling *>(pdePluginCallbackObject.get()) != nullptr;
    _PDELog(this, "Constraint Handling Available: %s", yesNo(useConstraintHandling));

    canResizeView = runningOnLeopardOrLater();
    _PDELog(this, "Can resize on the fly: %s", yesNo(canResizeView));

    if (useConstraintHandling)
        ppd = pdePluginCallbackObject ? pdePluginCallbackObject->ppdFile() : nullptr;
    else
        ppd = getPPDOnTiger();

    if (ppd) {
        ppdEncoding = getEncodingFromPPD(ppd);
        modelStringRef = pde::stringFromBytes(QByteArrayView(ppd->modelname), ppdEncoding).value_or(QString());

        // Without a current printer there is no queue to keep preferences for:
        // the panel then works as it does without a PPD.
        const pde::Printer *printer = nullptr;
        pde::PrintSession *session = pdePluginCallbackObject ? pdePluginCallbackObject->printSession() : nullptr;
        if (PMSessionGetCurrentPrinter(session, &printer) == noErr && printer) {
            preferenceName.reserve(1);
            preferenceName = QString::fromLatin1(kPreferenceDomainPrefix);
            preferenceName += PMPrinterGetID(printer);
            CheckPreference();
            GetUserPreference();
        }
    }

    systemEncoding = pde::systemStringEncoding();

    _PDEEpilog(this, "initWithCallback:=id(self)");
}

JpCoNuratPrintPdeQr7150kBC::~JpCoNuratPrintPdeQr7150kBC()
{
    modelStringRef = QString();
    preferenceName = QString();
    prefMainCodeStringRef.clear();
    prefMainCodeCBBooleanRef.clear();
    prefSubCodeStringRef.clear();
    prefSubCodeCBBooleanRef.clear();
    // A view the panel loaded for itself is the panel's until a host parents it.
    if (isPanelViewRetain && panelView_ && !panelView_->parent())
        delete panelView_.data();
    pdePluginCallbackObject.reset();
    pdeBundle.reset();
    thePDEName = QString();
}

QWidget *JpCoNuratPrintPdeQr7150kBC::panelView()
{
    _PDEProlog(this, "panelView:");
    if (!panelView_ && pdeBundle)
        pdeBundle->loadNibNamed(QString::fromLatin1(kViewDescription), this, nullptr);
    initializeUI();
    _PDEEpilog(this, "panelView:=NSView(%@, %p)", panelView_, panelView_);
    return panelView_;
}

QString JpCoNuratPrintPdeQr7150kBC::panelName()
{
    _PDEProlog(this, "panelName:");
    if (thePDEName.isNull()) {
        const QString key = QString::fromLatin1(kPanelNameKey);
        thePDEName = pdeBundle ? pdeBundle->localizedStringForKey(key, QString()) : key;
    }
    _PDEEpilog(this, "panelName:=NSString(%@)", thePDEName);
    return thePDEName;
}

QString JpCoNuratPrintPdeQr7150kBC::panelKind()
{
    _PDEProlog(this, "panelKind:");
    const QString kind = QString::fromLatin1(kPanelKind);
    _PDEEpilog(this, "panelKind:=NSString(%@)", kind);
    return kind;
}

QStringList JpCoNuratPrintPdeQr7150kBC::supportedPPDOptionKeys()
{
    _PDEProlog(this, "supportedPPDOptionKeys:");
    const QStringList keys { QStringLiteral("ARMainCode"), QStringLiteral("ARSubCode") };
    _PDEEpilog(this, "supportedPPDOptionKeys:=NSArray(%@)", keys);
    return keys;
}

void JpCoNuratPrintPdeQr7150kBC::willShow()
{
    _PDEProlog(this, "willShow:");
    if (!hasInited)
        initializeUI();
    updateUI();
    _PDEEpilog(this, "willShow:=void");
}

bool JpCoNuratPrintPdeQr7150kBC::shouldHide()
{
    _PDEProlog(this, "shouldHide:");
    _PDEEpilog(this, "shouldHide:=BOOL(YES)");
    return true;
}

bool JpCoNuratPrintPdeQr7150kBC::shouldShowHelp()
{
    _PDEProlog(this, "shouldShowHelp:");
    _PDEEpilog(this, "shouldShowHelp:=BOOL(YES)");
    return true;
}

bool JpCoNuratPrintPdeQr7150kBC::restoreValuesAndReturnError(QString *error)
{
    _PDEProlog(this, "restoreValuesAndReturnError:(%p)", error);
    if (!panelView_) {
        panelView();
        isPanelViewRetain = true;
    }
    if (!hasInited)
        initializeUI();
    if (!useConstraintHandling)
        getPPDSettingsFromPrintSettingsOnTiger();
    getNonPPDSettingsFromPrintSettings();
    updateUI();
    callRestoreValuesFunction = true;
    _PDEEpilog(this, "restoreValuesAndReturnError:=BOOL(YES)");
    return true;
}

bool JpCoNuratPrintPdeQr7150kBC::saveValuesAndReturnError(QString *error)
{
    _PDEProlog(this, "saveValuesAndReturnError:(%p)", error);
    if (!useConstraintHandling)
        writePPDSettingsToPrintSettingsOnTiger();
    writeNonPPDSettingsToPrintSettings();
    callSaveValuesFunction = true;
    _PDEEpilog(this, "saveValuesAndReturnError:=BOOL(YES)");
    return true;
}

bool JpCoNuratPrintPdeQr7150kBC::shouldPrint()
{
    _PDEProlog(this, "shouldPrint:");
    pde::PrintSettings *settings = pdePluginCallbackObject ? pdePluginCallbackObject->printSettings() : nullptr;
    if (!callRestoreValuesFunction)
        restoreValuesAndReturnError(nullptr);
    if (!callSaveValuesFunction)
        saveValuesAndReturnError(nullptr);
    if (settings && hasInited) {
        SaveUserPreference();
        GetUserPreference();
    }
    _PDEEpilog(this, "shouldPrint:=BOOL(YES)");
    return true;
}

void JpCoNuratPrintPdeQr7150kBC::PPDOptionKeyValueDidChange(const QString &option, const QString &choice)
{
    _PDEProlog(this, "PPDOptionKeyValueDidChange:(%@) ppdChoice:(%@)", option, choice);
    _PDEEpilog(this, "PPDOptionKeyValueDidChange:ppdChoice:=void");
}

QVariantMap JpCoNuratPrintPdeQr7150kBC::summaryInfo()
{
    _PDEProlog(this, "summaryInfo:");
    QVariantMap summary;
    if (hasInited) {
        auto addEntry = [&summary](const QCheckBox *box, const QLineEdit *field) {
            if (pde::buttonState(box) == pde::kButtonStateOn && field && !field->text().isEmpty())
                summary.insert(box->text(), field->text());
        };
        addEntry(mainCodeCB, mainCodeText);
        addEntry(subCodeCB, subCodeText);
    }
    _PDEEpilog(this, "summaryInfo:");
    return summary;
}

void JpCoNuratPrintPdeQr7150kBC::updateUI()
{
    _PDEProlog(this, "--updateUI:");
    _PDEEpilog(this, "--updateUI:");
}

// This platform has no legacy call for a session's PPD.
ppd_file_t *JpCoNuratPrintPdeQr7150kBC::getPPDOnTiger()
{
    return nullptr;
}

void JpCoNuratPrintPdeQr7150kBC::getPPDSettingsFromPrintSettingsOnTiger()
{
}

void JpCoNuratPrintPdeQr7150kBC::writePPDSettingsToPrintSettingsOnTiger()
{
}
