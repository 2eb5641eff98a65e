#include "host/printer/PrinterPanels.h"

#include "host/HostCallback.h"
#include "host/PanelSession.h"
#include "host/PreferenceDomains.h"

namespace pdeprint {

namespace {

// -o choices of PPD options must agree with the PPD's constraints.
bool markPpdOptions(const Options &options, HostCallback &callback, ppd_file_t *ppd, QString *error)
{
    for (const auto &[name, value] : options.jobOptions) {
        if (!ppd || !ppdFindOption(ppd, name.toUtf8().constData()))
            continue;
        if (!callback.willChangePPDOptionKeyValue(name, value)) {
            *error = QStringLiteral("-o %1=%2: not a choice of the printer, or in conflict with its other settings")
                         .arg(name, value);
            return false;
        }
    }
    return true;
}

} // namespace

PrinterPanels::PrinterPanels(const pde::Printer &printer, PpdPtr ppd)
    : m_printer(printer)
    , m_ppd(std::move(ppd))
    , m_callback(std::make_shared<HostCallback>(m_printer, m_ppd.get()))
{
}

PrinterPanels::~PrinterPanels() = default;

std::unique_ptr<PrinterPanels> PrinterPanels::create(const std::vector<LoadedPlugin> &plugins,
                                                     const pde::Printer &printer, PpdPtr ppd, const Options &options,
                                                     QString *error)
{
    std::unique_ptr<PrinterPanels> panels(new PrinterPanels(printer, std::move(ppd)));
    if (!markPpdOptions(options, *panels->m_callback, panels->m_ppd.get(), error))
        return nullptr;
    QStringList prefixes;
    for (const LoadedPlugin &plugin : plugins)
        prefixes << plugin.preferenceDomainPrefixes;
    if (!ensurePreferenceDomains(prefixes, PMPrinterGetID(&panels->m_printer), error))
        return nullptr;
    panels->m_session = std::make_unique<PanelSession>(plugins, panels->m_callback);
    return panels;
}

} // namespace pdeprint
