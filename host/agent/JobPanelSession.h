#pragma once

#include <QList>
#include <QMap>
#include <QString>

#include <memory>
#include <vector>

#include "host/PluginLoader.h"
#include "host/agent/cups/HeldJob.h"

class QWidget;

namespace pdeprint {

class CupsConnection;
class PanelSession;

// The panels of one held job's queue, built exactly as the print dialog
// builds them: the queue's PPD, the queue's preferences domains (created
// empty when missing), the job's current attributes as the print settings;
// then restore, views and willShow. Nothing here knows of windows: a window
// shows views(), a headless run acts on them. finish() saves and asks
// shouldPrint; the ticket it answers goes to the job with releaseJob().
class JobPanelSession
{
public:
    ~JobPanelSession();
    JobPanelSession(const JobPanelSession &) = delete;
    JobPanelSession &operator=(const JobPanelSession &) = delete;

    // Null with a one-line reason when the queue's panels cannot be made.
    static std::unique_ptr<JobPanelSession> open(const std::vector<LoadedPlugin> &plugins, CupsConnection &cups,
                                                 const HeldJob &job, QString *error);

    const HeldJob &job() const { return m_job; }
    // The panels' views, in panel order; a window may take (reparent) them.
    QList<QWidget *> views() const;
    // The panels' names, in the same order.
    QStringList panelNames() const;

    // Saves the panels' values and says whether the queue's record is kept,
    // as the plug-ins' "KeptWhen" settings tell.
    bool saveAndCheckKept();

    // Saves the panels' values and asks every panel shouldPrint. The ticket
    // is every print setting the panels wrote or changed, minus the PPD
    // options a panel handles itself, and the standard account attributes
    // when the panels' account code is on. False when a panel stops the job.
    bool finish(QMap<QString, QString> *ticket, QString *error);

private:
    struct Parts;
    explicit JobPanelSession(std::unique_ptr<Parts> parts, HeldJob job);

    std::unique_ptr<Parts> m_parts;
    HeldJob m_job;
};

} // namespace pdeprint
