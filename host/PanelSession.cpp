#include "host/PanelSession.h"

#include "host/HostCallback.h"
#include "platform/DialogTypes.h"

#include <QPointer>
#include <QWidget>

namespace pdeprint {

PanelSession::PanelSession(const std::vector<LoadedPlugin> &plugins, std::shared_ptr<HostCallback> callback)
    : m_callback(std::move(callback))
{
    for (const LoadedPlugin &plugin : plugins) {
        std::optional<pde::PanelList> list =
            plugin.factory->PDEPanelsForType(QString::fromLatin1(pde::kPrintDialogType), m_callback);
        if (!list)
            continue;
        for (auto &panel : *list) {
            if (panel)
                m_panels.push_back({ std::move(panel), {}, {} });
        }
    }
}

PanelSession::~PanelSession()
{
    // A view the dialog did not take is still ours; panels go first, as their
    // outlets into the views are weak.
    std::vector<QPointer<QWidget>> orphans;
    for (Entry &entry : m_panels) {
        if (entry.view && !entry.view->parent())
            orphans.emplace_back(entry.view);
    }
    m_panels.clear();
    for (QPointer<QWidget> &view : orphans)
        delete view.data();
}

void PanelSession::open()
{
    for (Entry &entry : m_panels) {
        entry.name = entry.panel->panelName();
        entry.panel->restoreValuesAndReturnError(nullptr);
    }
}

void PanelSession::loadViews()
{
    for (Entry &entry : m_panels) {
        if (!entry.view)
            entry.view = entry.panel->panelView();
    }
}

void PanelSession::showPanels()
{
    for (Entry &entry : m_panels)
        entry.panel->willShow();
}

void PanelSession::accept()
{
    for (Entry &entry : m_panels)
        entry.panel->saveValuesAndReturnError(nullptr);
}

bool PanelSession::shouldPrint()
{
    bool print = true;
    for (Entry &entry : m_panels)
        print = entry.panel->shouldPrint() && print;
    return print;
}

QStringList PanelSession::summaryLines()
{
    QStringList lines;
    for (Entry &entry : m_panels) {
        const QVariantMap summary = entry.panel->summaryInfo();
        for (auto it = summary.cbegin(); it != summary.cend(); ++it)
            lines << QStringLiteral("%1: %2 %3").arg(entry.name, it.key(), it.value().toString());
    }
    return lines;
}

QStringList PanelSession::panelOptionKeys()
{
    QStringList keys;
    for (Entry &entry : m_panels)
        keys << entry.panel->supportedPPDOptionKeys();
    return keys;
}

} // namespace pdeprint
