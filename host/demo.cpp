// Loads the billing-code plug-in through the platform and prints what its
// panel answers for the sample printer.

#include "platform/Bundle.h"
#include "platform/DialogTypes.h"
#include "platform/PanelFactory.h"
#include "platform/PluginCallback.h"
#include "platform/PrintSession.h"
#include "platform/PrintSettings.h"

#include <QApplication>

#include <cstdio>

namespace {

class DemoCallback : public pde::PluginCallback
{
public:
    explicit DemoCallback(ppd_file_t *ppd) : m_ppd(ppd) { m_session.setCurrentPrinter(pde::Printer { QStringLiteral("demo"), {} }); }
    pde::PrintSession *printSession() override { return &m_session; }
    pde::PrintSettings *printSettings() override { return &m_settings; }
    ppd_file_t *ppdFile() override { return m_ppd; }

private:
    pde::PrintSession m_session;
    pde::PrintSettings m_settings;
    ppd_file_t *m_ppd;
};

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QString error;
    auto bundle = pde::Bundle::loadPlugIn(QStringLiteral(PDE_PLUGIN_BUILD_DIR "/billingcode.so"), &error);
    if (!bundle) {
        std::fprintf(stderr, "pdeprint-demo: %s\n", qPrintable(error));
        return 1;
    }
    auto *factory = qobject_cast<pde::PanelFactory *>(bundle->principalObject());
    if (!factory) {
        std::fprintf(stderr, "pdeprint-demo: plug-in has no panel factory\n");
        return 1;
    }
    ppd_file_t *ppd = ppdOpenFile(PDE_SAMPLE_PPD);
    if (!ppd) {
        std::fprintf(stderr, "pdeprint-demo: cannot read %s\n", PDE_SAMPLE_PPD);
        return 1;
    }
    factory->initWithBundle(bundle.get());
    auto callback = std::make_shared<DemoCallback>(ppd);
    {
        auto panels = factory->PDEPanelsForType(QString::fromLatin1(pde::kPrintDialogType), callback);
        if (!panels)
            panels.emplace();
        for (auto &panel : *panels) {
            std::printf("name: %s\nkind: %s\nPPD keywords: %s\n", qPrintable(panel->panelName()),
                        qPrintable(panel->panelKind()), qPrintable(panel->supportedPPDOptionKeys().join(QLatin1Char(' '))));
        }
    }
    ppdClose(ppd);
    return 0;
}
