#pragma once

#include <QMap>
#include <QString>

#include <cups/ipp.h>

namespace pdeprint {

// A job as its owner sees it over IPP.
struct HeldJob
{
    int id = 0;
    QString queue;
    QString name;
    QString owner; // empty when the server keeps it from us: another user's job
    QString originHost; // the machine it was printed from, as the scheduler names it
    qint64 createdAt = 0; // seconds since the epoch
    ipp_jstate_t state = IPP_JSTATE_PENDING;
    QStringList stateReasons;
    // Every job attribute as text, by name.
    QMap<QString, QString> attributes;

    // Held until someone releases it, as a holding queue keeps a new job.
    bool isHeld() const
    {
        return state == IPP_JSTATE_HELD && stateReasons.contains(QStringLiteral("job-hold-until-specified"));
    }
};

} // namespace pdeprint
