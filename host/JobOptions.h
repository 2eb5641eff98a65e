#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

namespace pde {
class PrintSettings;
}

namespace pdeprint {

// The dialog's own settings of a job.
struct DialogSettings
{
    int copies = 1;
    QString pageRanges; // empty: all pages
    QString sides;      // empty: the queue's default
};

// A job's options by name. Print-settings values go to the printer as text,
// exactly as the panels wrote them; the others are encoded by their look.
struct JobOptions
{
    QMap<QString, QString> settings; // from the print settings
    QMap<QString, QString> others;   // the dialog's and the command line's

    // Every option, sorted by name; print settings win over the others.
    QMap<QString, QString> all() const;
};

// The job's options: every print setting except the PPD options that a panel
// handles itself (`panelOptionKeys`), the -o options, and the dialog settings
// that differ from the defaults.
JobOptions makeJobOptions(const pde::PrintSettings &settings, const QStringList &panelOptionKeys,
                          const QList<std::pair<QString, QString>> &commandLineOptions,
                          const DialogSettings &dialog);

} // namespace pdeprint
