#include "host/PrintCommand.h"

#include "host/AccountAttributes.h"
#include "host/ControlActions.h"
#include "host/CupsQueue.h"
#include "host/DialogDriver.h"
#include "host/HostCallback.h"
#include "host/JobOptions.h"
#include "host/PanelSession.h"
#include "host/PluginLoader.h"
#include "host/PrintableFile.h"
#include "host/printer/Destination.h"
#include "host/printer/PrinterPanels.h"
#include "host/printer/SavedOptions.h"
#include "platform/UserDefaults.h"

#include <QFileInfo>
#include <QScopeGuard>

namespace pdeprint {

namespace {

int listPanels(const std::vector<LoadedPlugin> &plugins, QTextStream &out)
{
    auto callback = std::make_shared<HostCallback>(pde::Printer(), nullptr);
    PanelSession session(plugins, callback);
    for (auto &entry : session.panels()) {
        out << entry.panel->panelName() << '\t' << entry.panel->panelKind() << '\n';
    }
    return kExitOk;
}

} // namespace

bool wantsDialog(const Options &options)
{
    if (options.mode != DialogMode::Automatic)
        return options.mode == DialogMode::Dialog;
    if (!options.screenshot.isEmpty())
        return true;
    const bool display = !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    const QString platform = qEnvironmentVariable("QT_QPA_PLATFORM");
    return display && platform != QLatin1String("offscreen") && platform != QLatin1String("minimal");
}

int runPrintCommand(const Options &options, QTextStream &out, QTextStream &err)
{
    auto fail = [&err](const QString &why) {
        err << "pdeprint: " << why << Qt::endl;
        return kExitFailure;
    };
    // A dry run reads the kept codes but changes nothing on disk.
    pde::UserDefaults::setWritesSuspended(options.dryRun);
    const auto resumeWrites = qScopeGuard([] { pde::UserDefaults::setWritesSuspended(false); });
    const bool dialog = wantsDialog(options);
    if (!dialog && !options.screenshot.isEmpty())
        return fail(QStringLiteral("--screenshot needs the dialog; leave out --no-dialog"));

    const std::vector<LoadedPlugin> plugins = loadPlugins(options.pluginFolders, err);
    if (options.listPanels)
        return listPanels(plugins, out);

    QString error;
    for (const QString &file : options.files) {
        if (!isPrintableFile(file, &error))
            return fail(error);
    }
    Destination destination;
    if (!findDestination(options, &destination, &error))
        return fail(error);
    if (!error.isEmpty())
        err << "pdeprint: warning: " << error << Qt::endl;

    std::unique_ptr<PrinterPanels> panels =
        PrinterPanels::create(plugins, destination.printer, std::move(destination.ppd), options, &error);
    if (!panels)
        return fail(error);

    DialogSettings dialogSettings { options.copies, options.pageRanges, options.sides };
    std::unique_ptr<DialogDriver> driver; // outlives the panels' views
    if (dialog) {
        // Another printer gets panels of its own; the old ones stay until
        // the new ones exist, so that a failure leaves the dialog whole.
        auto switchPrinter = [&](const QString &name, QString *why) -> PanelSession * {
            if (!switchDestination(name, &destination, why))
                return nullptr;
            std::unique_ptr<PrinterPanels> next =
                PrinterPanels::create(plugins, destination.printer, std::move(destination.ppd), options, why);
            if (!next)
                return nullptr;
            panels = std::move(next);
            return &panels->session();
        };
        driver = std::make_unique<DialogDriver>(panels->session(), PMPrinterGetID(&destination.printer), options,
                                                switchPrinter);
        if (!driver->exec(&error)) {
            if (!error.isEmpty())
                return fail(error);
            // A screenshot run cancels the dialog on purpose.
            return options.screenshot.isEmpty() ? kExitCancelled : kExitOk;
        }
        dialogSettings = driver->dialogSettings();
    } else {
        PanelSession &session = panels->session();
        session.open();
        session.loadViews();
        session.showPanels();
        QList<QWidget *> views;
        for (auto &entry : session.panels())
            views << entry.view;
        if (!applyControlActions(views, options.actions, false, &error))
            return fail(error);
        session.accept();
    }
    PanelSession &session = panels->session();
    const pde::Printer target = panels->printer();
    if (!session.shouldPrint())
        return fail(QStringLiteral("a panel stopped the job"));

    if (options.summary) {
        for (const QString &line : session.summaryLines())
            out << line << '\n';
    }
    // As lp does: the queue's and the user's saved options, then ours on top.
    QList<std::pair<QString, QString>> requested;
    if (destination.cups)
        requested = savedOptions(destination.cups->http(), target);
    // The job carries its ticket already: a holding queue (whose default is
    // among the saved options) must not keep it for the agent.
    requested.append({ QStringLiteral("job-hold-until"), QStringLiteral("no-hold") });
    requested.append(QList<std::pair<QString, QString>>(options.jobOptions.begin(), options.jobOptions.end()));
    JobOptions jobOptions =
        makeJobOptions(*panels->callback().printSettings(), session.panelOptionKeys(), requested, dialogSettings);
    // The panels' code, when switched on, replaces what -o or the saved options said.
    jobOptions.others.insert(accountAttributes(accountCodeOf(plugins, *panels->callback().printSettings())));
    if (options.dryRun) {
        const QMap<QString, QString> all = jobOptions.all();
        for (auto it = all.cbegin(); it != all.cend(); ++it)
            out << it.key() << '=' << it.value() << '\n';
        out.flush();
        return kExitOk;
    }
    if (!destination.cups)
        return fail(QStringLiteral("no connection to the CUPS server"));
    const int job = destination.cups->submit(target, QFileInfo(options.files.first()).fileName(), options.files,
                                             jobOptions, &error);
    if (job <= 0)
        return fail(error);
    out << "request id is " << target.name << '-' << job << " (" << options.files.size() << " file(s))\n";
    out.flush();
    return kExitOk;
}

} // namespace pdeprint
