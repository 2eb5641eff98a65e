#pragma once

#include <QString>
#include <QtPlugin>

#include <memory>
#include <optional>
#include <vector>

#include "platform/Panel.h"

namespace pde {

class Bundle;
class PluginCallback;

using PanelList = std::vector<std::unique_ptr<Panel>>;

// The root object of a panel plug-in module.
class PanelFactory
{
public:
    virtual ~PanelFactory() = default;

    virtual bool initWithBundle(Bundle *bundle) = 0;
    // The panels for a dialog type; the host owns them. No list at all (as
    // opposed to an empty one) when a panel could not be made.
    virtual std::optional<PanelList> PDEPanelsForType(const QString &type,
                                                      const std::shared_ptr<PluginCallback> &hostInfo) = 0;
};

} // namespace pde

#define PDE_PANEL_FACTORY_IID "pde.PanelFactory/1.0"
Q_DECLARE_INTERFACE(pde::PanelFactory, PDE_PANEL_FACTORY_IID)
