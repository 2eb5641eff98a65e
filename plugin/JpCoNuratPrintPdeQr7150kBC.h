#pragma once

#include <QCheckBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QToolButton>
#include <QVariant>
#include <QWidget>

#include <cups/ppd.h>

#include <memory>

#include "platform/Panel.h"
#include "platform/StringEncoding.h"

namespace pde {
class Bundle;
class PluginCallback;
}

class QComboBox;
class JpCoNuratPrintPdeQr7150kBCPDEChoice;

// Declared type of the host's callback object; the object a host passes is its
// own pde::PluginCallback.
class JpCoNuratPrintPdeQr7150kBCPDEPluginCallback
{
};

// The "Billing Code" panel.
class JpCoNuratPrintPdeQr7150kBC : public QObject, public pde::Panel
{
    Q_OBJECT
    Q_CLASSINFO("PDEBundleIdentifier", "jp.co.nurat.print.pde.qr7150k")
    // Outlets, filled when the view description is loaded with the panel as owner.
    Q_PROPERTY(QWidget *panelView READ panelViewOutlet WRITE setPanelViewOutlet)
    Q_PROPERTY(QToolButton *holdButton READ holdButtonOutlet WRITE setHoldButtonOutlet)
    Q_PROPERTY(QGroupBox *billingCodeBox READ billingCodeBoxOutlet WRITE setBillingCodeBoxOutlet)
    Q_PROPERTY(QCheckBox *mainCodeCB READ mainCodeCBOutlet WRITE setMainCodeCBOutlet)
    Q_PROPERTY(QLineEdit *mainCodeText READ mainCodeTextOutlet WRITE setMainCodeTextOutlet)
    Q_PROPERTY(QCheckBox *subCodeCB READ subCodeCBOutlet WRITE setSubCodeCBOutlet)
    Q_PROPERTY(QLineEdit *subCodeText READ subCodeTextOutlet WRITE setSubCodeTextOutlet)

public:
    // initWithCallback:
    explicit JpCoNuratPrintPdeQr7150kBC(std::shared_ptr<pde::PluginCallback> callback);
    // dealloc
    ~JpCoNuratPrintPdeQr7150kBC() override;

    // The host's panel protocol.
    QWidget *panelView() override;
    QString panelName() override;
    QString panelKind() override;
    QStringList supportedPPDOptionKeys() override;
    void willShow() override;
    bool shouldHide() override;
    bool shouldPrint() override;
    bool shouldShowHelp() override;
    void PPDOptionKeyValueDidChange(const QString &option, const QString &choice) override;
    bool restoreValuesAndReturnError(QString *error) override;
    bool saveValuesAndReturnError(QString *error) override;
    QVariantMap summaryInfo() override;

    void updateUI();
    ppd_file_t *getPPDOnTiger();
    void getPPDSettingsFromPrintSettingsOnTiger();
    void writePPDSettingsToPrintSettingsOnTiger();

    // Print-settings exchange.
    void getNonPPDSettingsFromPrintSettings();
    void writeNonPPDSettingsToPrintSettings();

    // Controls set-up and enabling rules.
    void initializeUI();
    void mainCodeCBEnabled();
    void mainCodeTextEnabled();
    void subCodeCBEnabled();
    void subCodeTextEnabled();

    // Utilities.
    // A string, or a control (QObject *) whose text or title is localised;
    // a null string for anything else.
    QString localizedStringValue(const QVariant &object) const;
    qint64 indexOfMarkedOption(ppd_option_t *option, const char *keyword) const;
    void getSelection(std::shared_ptr<JpCoNuratPrintPdeQr7150kBCPDEChoice> *selection, QComboBox *popUp,
                      const QString &keyword);
    void getSelection(std::shared_ptr<JpCoNuratPrintPdeQr7150kBCPDEChoice> *selection,
                      const QList<std::shared_ptr<JpCoNuratPrintPdeQr7150kBCPDEChoice>> &choices,
                      QCheckBox *button, const QString &keyword);

    // Stored preferences.
    void CheckPreference();
    void GetUserPreference();
    bool SaveUserPreference();

public slots:
    // Actions; the sender is never read.
    void holdButtonProc(QObject *sender);
    void mainCodeCBProc(QObject *sender);
    void subCodeCBProc(QObject *sender);

private:
    QWidget *panelViewOutlet() const { return panelView_; }
    void setPanelViewOutlet(QWidget *view) { panelView_ = view; }
    QToolButton *holdButtonOutlet() const { return holdButton; }
    void setHoldButtonOutlet(QToolButton *button) { holdButton = button; }
    QGroupBox *billingCodeBoxOutlet() const { return billingCodeBox; }
    void setBillingCodeBoxOutlet(QGroupBox *box) { billingCodeBox = box; }
    QCheckBox *mainCodeCBOutlet() const { return mainCodeCB; }
    void setMainCodeCBOutlet(QCheckBox *box) { mainCodeCB = box; }
    QLineEdit *mainCodeTextOutlet() const { return mainCodeText; }
    void setMainCodeTextOutlet(QLineEdit *field) { mainCodeText = field; }
    QCheckBox *subCodeCBOutlet() const { return subCodeCB; }
    void setSubCodeCBOutlet(QCheckBox *box) { subCodeCB = box; }
    QLineEdit *subCodeTextOutlet() const { return subCodeText; }
    void setSubCodeTextOutlet(QLineEdit *field) { subCodeText = field; }

public:
    // Fields, in declared order. Public so that tests and the panel's own
    // operations in other files reach them by name.
    std::shared_ptr<pde::PluginCallback> pdePluginCallbackObject;
    QString thePDEName;                              // null until panelName
    signed char useConstraintHandling = false;
    signed char canResizeView = false;
    signed char hasInited = false;
    ppd_file_t *ppd = nullptr;                       // borrowed
    pde::StringEncoding ppdEncoding = 0;
    pde::StringEncoding systemEncoding = 0;
    std::shared_ptr<pde::Bundle> pdeBundle;
    signed char callSaveValuesFunction = false;
    signed char callRestoreValuesFunction = false;
    QPointer<QWidget> panelView_;                    // the `panelView` outlet
    QPointer<QToolButton> holdButton;
    QPointer<QGroupBox> billingCodeBox;
    QPointer<QCheckBox> mainCodeCB;
    QPointer<QLineEdit> mainCodeText;
    QPointer<QCheckBox> subCodeCB;
    QPointer<QLineEdit> subCodeText;
    QString preferenceName;                          // null without a PPD
    QString modelStringRef;                          // null without a PPD
    QString mfpURL;
    QVariantMap preferenceDict;
    QVariant prefMainCodeCBBooleanRef;               // invalid when not stored
    QVariant prefMainCodeStringRef;
    QVariant prefSubCodeCBBooleanRef;
    QVariant prefSubCodeStringRef;
    quint32 prefHoldButtonFlag = 0;
    quint32 presetHoldButtonFlag = 0;
    qint32 defaultIppPortNumber = 0;
    quint8 securePrintEnable = 0;
    QString urlStringRef;
    signed char isPanelViewRetain = false;
};
