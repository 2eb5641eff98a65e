#pragma once

#include <QPointer>
#include <QString>
#include <QStringList>
#include <QVariantMap>
#include <QWidget>

#include <memory>
#include <vector>

#include "host/PluginLoader.h"
#include "platform/PanelFactory.h"

namespace pdeprint {

class HostCallback;

// The panels of one print dialog, driven through the panel protocol in the
// host's order: open (name, restore), views, show, accept (save), print
// (shouldPrint), summaries; destroyed with the session.
class PanelSession
{
public:
    PanelSession(const std::vector<LoadedPlugin> &plugins, std::shared_ptr<HostCallback> callback);
    ~PanelSession();
    PanelSession(const PanelSession &) = delete;
    PanelSession &operator=(const PanelSession &) = delete;

    struct Entry
    {
        std::unique_ptr<pde::Panel> panel;
        QString name;
        QPointer<QWidget> view; // the dialog may own and delete it
    };
    std::vector<Entry> &panels() { return m_panels; }

    // Names every panel and restores its values from the print settings.
    void open();
    // Asks every panel for its view. Views nobody parents are deleted with the session.
    void loadViews();
    void showPanels();
    // Saves every panel's values into the print settings.
    void accept();
    // The last word before submission: false when a panel vetoes the job.
    bool shouldPrint();
    // "panel name: label: value" lines.
    QStringList summaryLines();
    // PPD options the panels handle themselves.
    QStringList panelOptionKeys();

private:
    std::shared_ptr<HostCallback> m_callback;
    std::vector<Entry> m_panels;
};

} // namespace pdeprint
