#pragma once

#include <QObject>

#include "platform/AccountCodes.h"
#include "platform/PanelFactory.h"

// The plug-in's root object: makes the "Billing Code" panel for the print
// dialog, and tells a host which of the panel's ticket keys carry the job's
// account code (the main code).
class JpCoNuratPrintPdeQr7150kBCPDEPlugIn : public QObject, public pde::PanelFactory, public pde::AccountCodes
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID PDE_PANEL_FACTORY_IID FILE "billingcode.json")
    Q_INTERFACES(pde::PanelFactory pde::AccountCodes)

public:
    bool initWithBundle(pde::Bundle *bundle) override;
    std::optional<pde::PanelList> PDEPanelsForType(const QString &type,
                                                   const std::shared_ptr<pde::PluginCallback> &hostInfo) override;

    // Defined with the ticket, in settings/.
    QString accountCode(const pde::PrintSettings &settings) const override;
    void setAccountCode(pde::PrintSettings &settings, const QString &code) const override;
};
