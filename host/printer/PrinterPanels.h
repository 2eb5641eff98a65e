#pragma once

#include <QList>
#include <QString>

#include <memory>
#include <utility>
#include <vector>

#include "host/CommandLine.h"
#include "host/PluginLoader.h"
#include "host/printer/Destination.h"
#include "platform/PrintSession.h"

namespace pdeprint {

class HostCallback;
class PanelSession;

// The panels made for one printer: they see its PPD, keep their values in its
// preferences domain and write the job's print settings. Choosing another
// printer means another PrinterPanels.
class PrinterPanels
{
public:
    // Marks the -o choices in the PPD and creates the printer's preferences
    // domains first; null with a reason when either fails.
    static std::unique_ptr<PrinterPanels> create(const std::vector<LoadedPlugin> &plugins, const pde::Printer &printer,
                                                 PpdPtr ppd, const Options &options, QString *error);
    ~PrinterPanels();
    PrinterPanels(const PrinterPanels &) = delete;
    PrinterPanels &operator=(const PrinterPanels &) = delete;

    const pde::Printer &printer() const { return m_printer; }
    HostCallback &callback() { return *m_callback; }
    PanelSession &session() { return *m_session; }

private:
    PrinterPanels(const pde::Printer &printer, PpdPtr ppd);

    // Declared in the order they depend on each other: the panels go first.
    pde::Printer m_printer;
    PpdPtr m_ppd;
    std::shared_ptr<HostCallback> m_callback;
    std::unique_ptr<PanelSession> m_session;
};

} // namespace pdeprint
