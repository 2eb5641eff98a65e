#pragma once

#include <QMap>
#include <QObject>
#include <QPointer>
#include <QTextStream>

#include <vector>

#include "host/PluginLoader.h"
#include "host/agent/HeldJobHandler.h"
#include "host/agent/ThisHost.h"

namespace pdeprint {

class CupsConnection;
class DesktopNotifier;
class HeldJobAgent;
class HeldJobWindow;

// The windowed agent's handler: a window for each job offered. With
// `releaseKept`, a job printed on this machine whose queue's record is kept
// is released at once, headless, and the user is told by a desktop
// notification instead. A job from another host always gets a window.
class JobWindows : public QObject, public HeldJobHandler
{
    Q_OBJECT
public:
    JobWindows(const std::vector<LoadedPlugin> &plugins, CupsConnection &cups, DesktopNotifier &notifier,
               bool releaseKept, QTextStream &out, QTextStream &err);
    ~JobWindows() override;

    void setAgent(HeldJobAgent *agent) { m_agent = agent; }
    void offer(const HeldJob &job) override;
    void withdrawn(int jobId) override;

    // The open job windows, by job id.
    QList<HeldJobWindow *> windows() const;

private:
    bool releasedAsKept(const HeldJob &job);
    void finished(int jobId, const QString &notice, bool unasked);

    const std::vector<LoadedPlugin> &m_plugins;
    CupsConnection &m_cups;
    DesktopNotifier &m_notifier;
    bool m_releaseKept;
    ThisHost m_thisHost;
    QTextStream &m_out;
    QTextStream &m_err;
    HeldJobAgent *m_agent = nullptr;
    QMap<int, QPointer<HeldJobWindow>> m_windows;
};

} // namespace pdeprint
