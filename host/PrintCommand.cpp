#include "host/PrintCommand.h"

#include "host/ControlActions.h"
#include "host/CupsQueue.h"
#include "host/DialogDriver.h"
#include "host/HostCallback.h"
#include "host/JobOptions.h"
#include "host/PanelSession.h"
#include "host/PluginLoader.h"
#include "host/PreferenceDomains.h"
#include "host/PrintableFile.h"

#include <QFileInfo>

namespace pdeprint {

namespace {

struct PpdCloser
{
    void operator()(ppd_file_t *ppd) const { ppdClose(ppd); }
};
using PpdPtr = std::unique_ptr<ppd_file_t, PpdCloser>;

pde::Printer printerFromName(const QString &name)
{
    const qsizetype slash = name.indexOf(QLatin1Char('/'));
    if (slash < 0)
        return { name, {} };
    return { name.left(slash), name.mid(slash + 1) };
}

// Everything a run needs before the panels are made.
struct Destination
{
    pde::Printer printer;
    PpdPtr ppd;
    std::unique_ptr<CupsConnection> cups; // null for a dry run with its own PPD
};

bool findDestination(const Options &options, Destination *destination, QString *error)
{
    // A dry run with a PPD of its own needs no server at all.
    const bool needsServer = !options.dryRun || options.ppdFile.isEmpty() || options.printer.isEmpty();
    if (!options.ppdFile.isEmpty()) {
        const QByteArray path = QFile::encodeName(options.ppdFile);
        destination->ppd.reset(ppdOpenFile(path.constData()));
        if (!destination->ppd) {
            *error = QStringLiteral("%1: not a readable PPD file").arg(options.ppdFile);
            return false;
        }
        ppdMarkDefaults(destination->ppd.get());
    }
    if (!needsServer) {
        destination->printer = printerFromName(options.printer);
        return true;
    }
    destination->cups = CupsConnection::open(error);
    if (!destination->cups)
        return false;
    if (options.printer.isEmpty()) {
        std::optional<pde::Printer> queue = destination->cups->defaultQueue();
        if (!queue) {
            *error = QStringLiteral("no printer given and the CUPS server has no default printer (use --printer)");
            return false;
        }
        destination->printer = *queue;
    } else {
        destination->printer = printerFromName(options.printer);
        if (!destination->cups->hasQueue(destination->printer, error))
            return false;
    }
    if (!destination->ppd)
        destination->ppd.reset(destination->cups->openQueuePpd(destination->printer, error));
    // A driverless queue has no PPD; its panels then work without one.
    return true;
}

// -o choices of PPD options must agree with the PPD's constraints.
bool markPpdOptions(const Options &options, HostCallback &callback, ppd_file_t *ppd, QString *error)
{
    for (const auto &[name, value] : options.jobOptions) {
        if (!ppd || !ppdFindOption(ppd, name.toUtf8().constData()))
            continue;
        if (!callback.willChangePPDOptionKeyValue(name, value)) {
            *error = QStringLiteral("-o %1=%2: not a choice of the printer, or in conflict with its other settings")
                         .arg(name, value);
            return false;
        }
    }
    return true;
}

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
    const bool dialog = wantsDialog(options);
    if (!dialog && !options.screenshot.isEmpty())
        return fail(QStringLiteral("--screenshot needs the dialog; leave out --no-dialog"));

    QStringList warnings;
    const std::vector<LoadedPlugin> plugins = loadPlugins(pluginSearchPath(options.pluginFolders), &warnings);
    for (const QString &warning : warnings)
        err << "pdeprint: warning: " << warning << Qt::endl;
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

    auto callback = std::make_shared<HostCallback>(destination.printer, destination.ppd.get());
    if (!markPpdOptions(options, *callback, destination.ppd.get(), &error))
        return fail(error);

    QStringList prefixes;
    for (const LoadedPlugin &plugin : plugins)
        prefixes << plugin.preferenceDomainPrefixes;
    if (!ensurePreferenceDomains(prefixes, PMPrinterGetID(&destination.printer), &error))
        return fail(error);

    PanelSession session(plugins, callback);
    DialogSettings dialogSettings { options.copies, options.pageRanges, options.sides };
    pde::Printer target = destination.printer;
    std::unique_ptr<DialogDriver> driver; // outlives the panels' views
    if (dialog) {
        driver = std::make_unique<DialogDriver>(session, PMPrinterGetID(&destination.printer), options);
        if (!driver->exec(&error)) {
            if (!error.isEmpty())
                return fail(error);
            // A screenshot run cancels the dialog on purpose.
            return options.screenshot.isEmpty() ? kExitCancelled : kExitOk;
        }
        if (driver->printsToFile())
            return fail(QStringLiteral("printing to a file is not supported; choose a printer"));
        dialogSettings = driver->dialogSettings();
        if (!driver->chosenPrinter().isEmpty())
            target = printerFromName(driver->chosenPrinter());
    } else {
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
    if (!session.shouldPrint())
        return fail(QStringLiteral("a panel stopped the job"));

    if (options.summary) {
        for (const QString &line : session.summaryLines())
            out << line << '\n';
    }
    const JobOptions jobOptions = makeJobOptions(*callback->printSettings(), session.panelOptionKeys(),
                                                 QList<std::pair<QString, QString>>(options.jobOptions.begin(),
                                                                                    options.jobOptions.end()),
                                                 dialogSettings);
    if (options.dryRun) {
        const QMap<QString, QString> all = jobOptions.all();
        for (auto it = all.cbegin(); it != all.cend(); ++it)
            out << it.key() << '=' << it.value() << '\n';
        out.flush();
        return kExitOk;
    }
    if (!destination.cups)
        return fail(QStringLiteral("no connection to the CUPS server"));
    if (target.name != destination.printer.name && !destination.cups->hasQueue(target, &error))
        return fail(error);
    // The job carries its ticket already: a holding queue must not keep it for the agent.
    JobOptions submitted = jobOptions;
    if (!submitted.others.contains(QStringLiteral("job-hold-until")))
        submitted.others.insert(QStringLiteral("job-hold-until"), QStringLiteral("no-hold"));
    const int job = destination.cups->submit(target, QFileInfo(options.files.first()).fileName(), options.files,
                                             submitted, &error);
    if (job <= 0)
        return fail(error);
    out << "request id is " << target.name << '-' << job << " (" << options.files.size() << " file(s))\n";
    out.flush();
    return kExitOk;
}

} // namespace pdeprint
