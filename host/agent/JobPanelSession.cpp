#include "host/agent/JobPanelSession.h"

#include "host/AccountAttributes.h"
#include "host/CupsQueue.h"
#include "host/HostCallback.h"
#include "host/JobOptions.h"
#include "host/PanelSession.h"
#include "host/printer/BillingRoutes.h"
#include "host/printer/PrinterPanels.h"

#include <QWidget>

namespace pdeprint {

// The queue's panels, and what the job came with.
struct JobPanelSession::Parts
{
    std::unique_ptr<PrinterPanels> panels;
    QMap<QString, QString> seeds; // the print settings the job came with
    QMap<QString, QString> keptWhen;
    const std::vector<LoadedPlugin> *plugins = nullptr;
};

JobPanelSession::JobPanelSession(std::unique_ptr<Parts> parts, HeldJob job)
    : m_parts(std::move(parts)), m_job(std::move(job))
{
}

JobPanelSession::~JobPanelSession() = default;

std::unique_ptr<JobPanelSession> JobPanelSession::open(const std::vector<LoadedPlugin> &plugins, CupsConnection &cups,
                                                       const HeldJob &job, QString *error)
{
    auto parts = std::make_unique<Parts>();
    const pde::Printer printer { job.queue, {} };
    QString ppdError;
    PpdPtr ppd(cups.openQueuePpd(printer, &ppdError)); // a driverless queue has none
    for (const LoadedPlugin &plugin : plugins)
        parts->keptWhen.insert(plugin.keptWhen);
    parts->panels = PrinterPanels::create(plugins, printer, std::move(ppd), Options(), error);
    if (!parts->panels)
        return nullptr;

    // The job's own choices, before the panels restore from them: PPD options
    // are marked where the constraints allow them, and every attribute is a
    // print setting.
    HostCallback &callback = parts->panels->callback();
    for (auto it = job.attributes.cbegin(); it != job.attributes.cend(); ++it) {
        if (callback.ppdFile() && ppdFindOption(callback.ppdFile(), it.key().toUtf8().constData()))
            callback.willChangePPDOptionKeyValue(it.key(), it.value());
        callback.printSettings()->setValue(it.key(), it.value());
    }
    parts->seeds = callback.printSettings()->values();
    // A code typed into the application's own dialog fills the panels in,
    // unless the job carries a code of theirs already.
    seedAccountCode(plugins, *callback.printSettings(),
                    applicationAccountCode(job.attributes, queueAccountIdDefault(cups, job.queue)));
    parts->plugins = &plugins;

    PanelSession &session = parts->panels->session();
    session.open();
    session.loadViews();
    session.showPanels();
    return std::unique_ptr<JobPanelSession>(new JobPanelSession(std::move(parts), job));
}

QList<QWidget *> JobPanelSession::views() const
{
    QList<QWidget *> views;
    for (auto &entry : m_parts->panels->session().panels())
        views << entry.view;
    return views;
}

QStringList JobPanelSession::panelNames() const
{
    QStringList names;
    for (auto &entry : m_parts->panels->session().panels())
        names << entry.name;
    return names;
}

bool JobPanelSession::saveAndCheckKept()
{
    m_parts->panels->session().accept();
    if (m_parts->keptWhen.isEmpty())
        return false;
    const pde::PrintSettings &settings = *m_parts->panels->callback().printSettings();
    for (auto it = m_parts->keptWhen.cbegin(); it != m_parts->keptWhen.cend(); ++it) {
        if (settings.value(it.key()) != it.value())
            return false;
    }
    return true;
}

bool JobPanelSession::finish(QMap<QString, QString> *ticket, QString *error)
{
    m_parts->panels->session().accept();
    if (!m_parts->panels->session().shouldPrint()) {
        *error = QStringLiteral("a panel stopped job %1").arg(m_job.id);
        return false;
    }
    const JobOptions options =
        makeJobOptions(*m_parts->panels->callback().printSettings(), m_parts->panels->session().panelOptionKeys(), {}, {});
    ticket->clear();
    for (auto it = options.settings.cbegin(); it != options.settings.cend(); ++it) {
        if (m_parts->seeds.value(it.key(), QString()) != it.value() || !m_parts->seeds.contains(it.key()))
            ticket->insert(it.key(), it.value());
    }
    ticket->insert(accountAttributes(accountCodeOf(*m_parts->plugins, *m_parts->panels->callback().printSettings())));
    return true;
}

} // namespace pdeprint
