#pragma once

#include <QObject>

#include "platform/PanelFactory.h"

// The plug-in's root object: makes the "Billing Code" panel for the print dialog.
class JpCoNuratPrintPdeQr7150kBCPDEPlugIn : public QObject, public pde::PanelFactory
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID PDE_PANEL_FACTORY_IID FILE "billingcode.json")
    Q_INTERFACES(pde::PanelFactory)

public:
    bool initWithBundle(pde::Bundle *bundle) override;
    std::optional<pde::PanelList> PDEPanelsForType(const QString &type,
                                                   const std::shared_ptr<pde::PluginCallback> &hostInfo) override;
};
