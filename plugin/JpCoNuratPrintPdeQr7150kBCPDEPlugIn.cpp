#include "plugin/JpCoNuratPrintPdeQr7150kBCPDEPlugIn.h"

#include "platform/DialogTypes.h"
#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"
#include "plugin/Trace.h"

bool JpCoNuratPrintPdeQr7150kBCPDEPlugIn::initWithBundle(pde::Bundle *)
{
    _PDEProlog(this, "initWithBundle:");
    _PDEEpilog(this, "initWithBundle:=BOOL(YES)");
    return true;
}

std::optional<pde::PanelList> JpCoNuratPrintPdeQr7150kBCPDEPlugIn::PDEPanelsForType(
    const QString &type, const std::shared_ptr<pde::PluginCallback> &hostInfo)
{
    _PDEProlog(this, "PDEPanelsForType:");
    std::optional<pde::PanelList> answer;
    answer.emplace();
    // The host owns the panel; the factory keeps nothing of it.
    if (type == QLatin1String(pde::kPrintDialogType))
        answer->push_back(std::make_unique<JpCoNuratPrintPdeQr7150kBC>(hostInfo));
    // This exit line goes through the entry function, as it always has.
    _PDEProlog(this, "PDEPanelsForType:=NSArray(%@)", answer);
    return answer;
}
