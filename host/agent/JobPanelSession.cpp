#include "host/agent/JobPanelSession.h"

#include "host/CupsQueue.h"
#include "host/HostCallback.h"
#include "host/JobOptions.h"
#include "host/PanelSession.h"
#include "host/PreferenceDomains.h"

#include <QWidget>

namespace pdeprint {

namespace {

struct PpdCloser
{
    void operator()(ppd_file_t *ppd) const { ppdClose(ppd); }
};

} // namespace

// Destroyed in reverse: panels first, then the callback they share, then the PPD.
struct JobPanelSession::Parts
{
    std::unique_ptr<ppd_file_t, PpdCloser> ppd;
    std::shared_ptr<HostCallback> callback;
    std::unique_ptr<PanelSession> session;
    QMap<QString, QString> seeds; // the print settings the job came with
    QMap<QString, QString> keptWhen;
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
    parts->ppd.reset(cups.openQueuePpd(printer, &ppdError)); // a driverless queue has none
    parts->callback = std::make_shared<HostCallback>(printer, parts->ppd.get());

    QStringList prefixes;
    for (const LoadedPlugin &plugin : plugins) {
        prefixes << plugin.preferenceDomainPrefixes;
        parts->keptWhen.insert(plugin.keptWhen);
    }
    if (!ensurePreferenceDomains(prefixes, job.queue, error))
        return nullptr;

    // The job's own choices: PPD options are marked where the constraints
    // allow them, and every attribute is a print setting.
    for (auto it = job.attributes.cbegin(); it != job.attributes.cend(); ++it) {
        if (parts->ppd && ppdFindOption(parts->ppd.get(), it.key().toUtf8().constData()))
            parts->callback->willChangePPDOptionKeyValue(it.key(), it.value());
        parts->callback->printSettings()->setValue(it.key(), it.value());
    }
    parts->seeds = parts->callback->printSettings()->values();

    parts->session = std::make_unique<PanelSession>(plugins, parts->callback);
    parts->session->open();
    parts->session->loadViews();
    parts->session->showPanels();
    return std::unique_ptr<JobPanelSession>(new JobPanelSession(std::move(parts), job));
}

QList<QWidget *> JobPanelSession::views() const
{
    QList<QWidget *> views;
    for (auto &entry : m_parts->session->panels())
        views << entry.view;
    return views;
}

QStringList JobPanelSession::panelNames() const
{
    QStringList names;
    for (auto &entry : m_parts->session->panels())
        names << entry.name;
    return names;
}

bool JobPanelSession::saveAndCheckKept()
{
    m_parts->session->accept();
    if (m_parts->keptWhen.isEmpty())
        return false;
    const pde::PrintSettings &settings = *m_parts->callback->printSettings();
    for (auto it = m_parts->keptWhen.cbegin(); it != m_parts->keptWhen.cend(); ++it) {
        if (settings.value(it.key()) != it.value())
            return false;
    }
    return true;
}

bool JobPanelSession::finish(QMap<QString, QString> *ticket, QString *error)
{
    m_parts->session->accept();
    if (!m_parts->session->shouldPrint()) {
        *error = QStringLiteral("a panel stopped job %1").arg(m_job.id);
        return false;
    }
    const JobOptions options =
        makeJobOptions(*m_parts->callback->printSettings(), m_parts->session->panelOptionKeys(), {}, {});
    ticket->clear();
    for (auto it = options.settings.cbegin(); it != options.settings.cend(); ++it) {
        if (m_parts->seeds.value(it.key(), QString()) != it.value() || !m_parts->seeds.contains(it.key()))
            ticket->insert(it.key(), it.value());
    }
    return true;
}

} // namespace pdeprint
