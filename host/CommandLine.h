#pragma once

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace pdeprint {

// One step done to a panel's control, in the order given.
struct ControlAction
{
    enum class Kind { Click, Type };
    Kind kind = Kind::Click;
    QString control; // object name
    QString text;    // for Type
    friend bool operator==(const ControlAction &, const ControlAction &) = default;
};

enum class DialogMode { Automatic, Headless, Dialog };

struct Options
{
    DialogMode mode = DialogMode::Automatic;
    bool dryRun = false;
    bool summary = false;
    bool listPanels = false;
    bool help = false;
    bool version = false;
    QString printer;            // queue, or queue/instance
    QString ppdFile;            // instead of the queue's PPD
    QString screenshot;         // PNG of the dialog once shown; the dialog is then cancelled
    QStringList pluginFolders;  // --plugins, in the order given
    std::vector<ControlAction> actions;
    // NAME=VALUE job options given with -o, in the order given.
    std::vector<std::pair<QString, QString>> jobOptions;
    int copies = 1;
    QString pageRanges;         // "1-3,5"
    QString sides;              // one-sided, two-sided-long-edge, two-sided-short-edge
    QStringList files;
    // Held jobs (host/agent): list, release one, release those with kept codes, watch.
    bool held = false;
    int releaseJob = 0;
    bool releaseKept = false;
    bool agent = false;
    bool codes = false;         // the queue's panels in a window, without a job
    QStringList queues;         // --queue, repeatable: only these queues are served
    // The administrator's check: the --printer queues (every --printer, in
    // order; all queues when none), and the agents to allow for.
    bool check = false;
    QStringList printers;
    int users = 0;
};

struct ParseResult
{
    std::optional<Options> options;
    QString error; // one line, set when options is empty
};

// Parses the arguments after the program name. Accepts "--name value" and
// "--name=value"; "--" ends the options.
ParseResult parseCommandLine(const QStringList &arguments);

QString usageText();

} // namespace pdeprint
