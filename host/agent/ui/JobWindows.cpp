#include "host/agent/ui/JobWindows.h"

#include "host/agent/HeadlessRelease.h"
#include "host/agent/HeldJobAgent.h"
#include "host/agent/JobPanelSession.h"
#include "host/agent/ui/DesktopNotifier.h"
#include "host/agent/ui/HeldJobWindow.h"

#include <QCoreApplication>

namespace pdeprint {

JobWindows::JobWindows(const std::vector<LoadedPlugin> &plugins, CupsConnection &cups, DesktopNotifier &notifier,
                       bool releaseKept, QTextStream &out, QTextStream &err)
    : m_plugins(plugins), m_cups(cups), m_notifier(notifier), m_releaseKept(releaseKept),
      m_thisHost(ThisHost::probe()), m_out(out), m_err(err)
{
}

// Windows still open when the agent stops leave their jobs held.
JobWindows::~JobWindows()
{
    for (const QPointer<HeldJobWindow> &window : std::as_const(m_windows))
        delete window.data();
}

QList<HeldJobWindow *> JobWindows::windows() const
{
    QList<HeldJobWindow *> open;
    for (const QPointer<HeldJobWindow> &window : m_windows) {
        if (window)
            open << window.data();
    }
    return open;
}

void JobWindows::offer(const HeldJob &job)
{
    if (m_windows.contains(job.id))
        return;
    const bool local = m_thisHost.isOrigin(job.originHost);
    if (m_releaseKept && local && releasedAsKept(job)) {
        if (m_agent)
            m_agent->done(job.id);
        return;
    }
    QString error;
    std::unique_ptr<JobPanelSession> session = JobPanelSession::open(m_plugins, m_cups, job, &error);
    if (!session) {
        m_err << "pdeprint: " << error << Qt::endl;
        if (m_agent)
            m_agent->done(job.id);
        return;
    }
    const QString sentFrom = local ? QString()
        : job.originHost.isEmpty() ? tr("an unknown host")
                                   : job.originHost;
    auto *window = new HeldJobWindow(std::move(session), m_cups, sentFrom);
    m_windows.insert(job.id, window);
    connect(window, &HeldJobWindow::closed, this, &JobWindows::finished);
    window->show();
    window->raise();
    window->activateWindow();
}

// True when the job is gone: released with the kept codes, or failed (told on stderr).
bool JobWindows::releasedAsKept(const HeldJob &job)
{
    QString unused; // a dry run's output, and this is none
    QTextStream none(&unused);
    QString error;
    switch (releaseHeadless(m_plugins, m_cups, job, { {}, false, true }, none, &error)) {
    case ReleaseOutcome::Released:
        m_out << tr("released job %1 on %2 with the kept codes").arg(job.id).arg(job.queue) << Qt::endl;
        m_notifier.notify(tr("Printing “%1”").arg(job.name),
                          tr("Printed from this computer; released on %1 with your kept billing codes.").arg(job.queue),
                          job.queue);
        return true;
    case ReleaseOutcome::NotKept:
    case ReleaseOutcome::DryRun:
        return false;
    case ReleaseOutcome::Failed:
        m_err << "pdeprint: " << error << Qt::endl;
        return true;
    }
    return false;
}

void JobWindows::withdrawn(int jobId)
{
    if (HeldJobWindow *window = m_windows.value(jobId)) {
        if (window->sentFrom().isEmpty())
            window->withdraw(tr("job %1 on %2 was cancelled, released or finished elsewhere; its window closed")
                                 .arg(jobId)
                                 .arg(window->queue()));
        else
            window->withdraw(tr("job %1 on %2, sent from %3, was cancelled, released or finished elsewhere; its "
                                "window closed")
                                 .arg(jobId)
                                 .arg(window->queue(), window->sentFrom()));
    }
}

void JobWindows::finished(int jobId, const QString &notice, bool unasked)
{
    m_windows.remove(jobId);
    if (!notice.isEmpty())
        m_out << notice << Qt::endl;
    if (unasked) // a window that vanished by itself needs a word
        m_notifier.notify(tr("Billing Code"), notice);
    if (m_agent)
        m_agent->done(jobId);
}

} // namespace pdeprint
