#include "host/CommandLine.h"

#include <functional>
#include <map>

namespace pdeprint {

namespace {

const QStringList kSides { QStringLiteral("one-sided"), QStringLiteral("two-sided-long-edge"),
                           QStringLiteral("two-sided-short-edge") };

// "1-3,5,7-" style ranges of positive page numbers.
bool isPageRanges(const QString &text)
{
    if (text.isEmpty())
        return false;
    for (const QString &range : text.split(QLatin1Char(','))) {
        const QStringList ends = range.split(QLatin1Char('-'));
        if (ends.size() > 2)
            return false;
        int previous = 0;
        for (qsizetype i = 0; i < ends.size(); ++i) {
            if (ends[i].isEmpty() && i == 1 && ends.size() == 2)
                continue; // open end
            bool ok = false;
            const int page = ends[i].toInt(&ok);
            if (!ok || page < 1 || page < previous)
                return false;
            previous = page;
        }
    }
    return true;
}

bool splitPair(const QString &text, QString *name, QString *value)
{
    const qsizetype equals = text.indexOf(QLatin1Char('='));
    if (equals <= 0)
        return false;
    *name = text.left(equals);
    *value = text.mid(equals + 1);
    return true;
}

} // namespace

ParseResult parseCommandLine(const QStringList &arguments)
{
    Options options;
    auto fail = [](const QString &why) { return ParseResult { std::nullopt, why }; };

    using Flag = std::function<void()>;
    const std::map<QString, Flag> flags {
        { QStringLiteral("--no-dialog"), [&] { options.mode = DialogMode::Headless; } },
        { QStringLiteral("--dialog"), [&] { options.mode = DialogMode::Dialog; } },
        { QStringLiteral("--dry-run"), [&] { options.dryRun = true; } },
        { QStringLiteral("--summary"), [&] { options.summary = true; } },
        { QStringLiteral("--list-panels"), [&] { options.listPanels = true; } },
        { QStringLiteral("--help"), [&] { options.help = true; } },
        { QStringLiteral("-h"), [&] { options.help = true; } },
        { QStringLiteral("--version"), [&] { options.version = true; } },
        { QStringLiteral("--held"), [&] { options.held = true; } },
        { QStringLiteral("--release-kept"), [&] { options.releaseKept = true; } },
        { QStringLiteral("--agent"), [&] { options.agent = true; } },
        { QStringLiteral("--codes"), [&] { options.codes = true; } },
        { QStringLiteral("--check"), [&] { options.check = true; } },
    };
    // Each answers an error text, empty when the value is good.
    using Valued = std::function<QString(const QString &)>;
    const std::map<QString, Valued> valued {
        { QStringLiteral("--printer"), [&](const QString &v) {
              options.printer = v;
              options.printers << v;
              return QString();
          } },
        { QStringLiteral("--ppd"), [&](const QString &v) { options.ppdFile = v; return QString(); } },
        { QStringLiteral("--screenshot"), [&](const QString &v) { options.screenshot = v; return QString(); } },
        { QStringLiteral("--plugins"), [&](const QString &v) { options.pluginFolders << v; return QString(); } },
        { QStringLiteral("--queue"), [&](const QString &v) { options.queues << v; return QString(); } },
        { QStringLiteral("--release"), [&](const QString &v) {
              bool ok = false;
              options.releaseJob = v.toInt(&ok);
              return ok && options.releaseJob > 0 ? QString()
                                                  : QStringLiteral("--release wants a job id, not \"%1\"").arg(v);
          } },
        { QStringLiteral("--users"), [&](const QString &v) {
              bool ok = false;
              options.users = v.toInt(&ok);
              return ok && options.users > 0 ? QString()
                                             : QStringLiteral("--users wants a number of agents, not \"%1\"").arg(v);
          } },
        { QStringLiteral("--click"), [&](const QString &v) {
              options.actions.push_back({ ControlAction::Kind::Click, v, {} });
              return QString();
          } },
        { QStringLiteral("--type"), [&](const QString &v) {
              ControlAction action { ControlAction::Kind::Type, {}, {} };
              if (!splitPair(v, &action.control, &action.text))
                  return QStringLiteral("--type wants NAME=TEXT, not \"%1\"").arg(v);
              options.actions.push_back(action);
              return QString();
          } },
        { QStringLiteral("-o"), [&](const QString &v) {
              QString name, value;
              if (!splitPair(v, &name, &value))
                  return QStringLiteral("-o wants NAME=VALUE, not \"%1\"").arg(v);
              options.jobOptions.emplace_back(name, value);
              return QString();
          } },
        { QStringLiteral("--copies"), [&](const QString &v) {
              bool ok = false;
              options.copies = v.toInt(&ok);
              return ok && options.copies >= 1 && options.copies <= 9999
                  ? QString() : QStringLiteral("--copies wants a number from 1 to 9999, not \"%1\"").arg(v);
          } },
        { QStringLiteral("--pages"), [&](const QString &v) {
              options.pageRanges = v;
              return isPageRanges(v) ? QString() : QStringLiteral("--pages wants ranges like 1-3,5, not \"%1\"").arg(v);
          } },
        { QStringLiteral("--sides"), [&](const QString &v) {
              options.sides = v;
              return kSides.contains(v) ? QString()
                                        : QStringLiteral("--sides wants one of %1").arg(kSides.join(QStringLiteral(", ")));
          } },
    };

    bool optionsEnded = false;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments[i];
        if (optionsEnded || !argument.startsWith(QLatin1Char('-')) || argument == QLatin1String("-")) {
            options.files << argument;
            continue;
        }
        if (argument == QLatin1String("--")) {
            optionsEnded = true;
            continue;
        }
        QString name = argument;
        std::optional<QString> inlineValue;
        if (argument.startsWith(QLatin1String("--")) && argument.contains(QLatin1Char('='))) {
            name = argument.left(argument.indexOf(QLatin1Char('=')));
            inlineValue = argument.mid(name.size() + 1);
        }
        if (auto flag = flags.find(name); flag != flags.end()) {
            if (inlineValue)
                return fail(QStringLiteral("%1 takes no value").arg(name));
            flag->second();
            continue;
        }
        auto option = valued.find(name);
        if (option == valued.end())
            return fail(QStringLiteral("unknown option %1 (see --help)").arg(name));
        QString value;
        if (inlineValue) {
            value = *inlineValue;
        } else if (i + 1 < arguments.size()) {
            value = arguments[++i];
        } else {
            return fail(QStringLiteral("%1 needs a value").arg(name));
        }
        if (const QString error = option->second(value); !error.isEmpty())
            return fail(error);
    }

    if (options.users > 0 && !options.check)
        return fail(QStringLiteral("--users goes with --check"));
    if (options.check) {
        if (!options.files.isEmpty() || options.held || options.releaseJob > 0 || options.releaseKept || options.agent
            || options.codes)
            return fail(QStringLiteral("--check takes only --printer, --users and --plugins"));
        return { options, {} };
    }
    const int heldModes = int(options.held) + int(options.releaseJob > 0) + int(options.agent) + int(options.codes);
    if (heldModes > 1 || ((options.held || options.releaseJob > 0 || options.codes) && options.releaseKept))
        return fail(QStringLiteral("choose one of --held, --release, --agent, --codes (--release-kept goes with --agent)"));
    if (options.codes && options.mode == DialogMode::Headless)
        return fail(QStringLiteral("--codes opens a window; leave out --no-dialog"));
    if (heldModes > 0 || options.releaseKept) {
        if (!options.files.isEmpty())
            return fail(QStringLiteral("held jobs are already printed; leave out the file names"));
        return { options, {} };
    }
    if (!options.help && !options.version && !options.listPanels && options.files.isEmpty())
        return fail(QStringLiteral("no file to print (see --help)"));
    if (options.files.contains(QStringLiteral("-")))
        return fail(QStringLiteral("printing from standard input is not supported; name a file"));
    return { options, {} };
}

QString usageText()
{
    return QStringLiteral(
        "Usage: pdeprint [options] FILE...\n"
        "Print files through a print dialog with panel plug-ins, or without one.\n"
        "\n"
        "  --printer NAME       CUPS queue (NAME or NAME/INSTANCE); default: the default queue\n"
        "  --ppd FILE           use this PPD instead of the queue's\n"
        "  --no-dialog          drive the panels without a window (default without a display)\n"
        "  --dialog             show the print dialog even where it would not be the default\n"
        "  --click NAME         click the panel control named NAME\n"
        "  --type NAME=TEXT     type TEXT into the panel field named NAME\n"
        "  -o NAME=VALUE        add a job option\n"
        "  --copies N           number of copies\n"
        "  --pages RANGES       pages to print, e.g. 1-3,5\n"
        "  --sides SIDES        one-sided, two-sided-long-edge or two-sided-short-edge\n"
        "  --dry-run            print the job's options, one name=value a line; submit and store nothing\n"
        "  --summary            print each panel's summary\n"
        "  --list-panels        list the panels of the loaded plug-ins and exit\n"
        "  --plugins DIR        look for panel plug-ins in DIR too\n"
        "  --screenshot FILE    save a PNG of the dialog once shown, then cancel it\n"
        "  --help, --version\n"
        "\n"
        "Jobs held by a queue (job-hold-until-default=indefinite), e.g. printed with lp:\n"
        "  --held               list your held jobs the panels would handle\n"
        "  --release JOB-ID     drive the job's panels (--click, --type) and release it;\n"
        "                       with --dry-run, print its ticket instead\n"
        "  --release-kept       release the held jobs of queues whose codes are kept\n"
        "  --agent              watch for held jobs and open a window for each, with the\n"
        "                       queue's panels, \"Print\" and \"Cancel Job\"; with --release-kept,\n"
        "                       jobs of queues whose codes are kept are released at once\n"
        "  --agent --no-dialog  watch for held jobs and release each with the same steps\n"
        "                       (with --release-kept: only those with kept codes); SIGTERM stops it\n"
        "  --codes              change or unlock the kept codes of the --printer queue\n"
        "                       (default: the default queue) in a window, without a job\n"
        "  --queue NAME         serve only this queue (repeatable); default: the queues\n"
        "                       whose codes reach the printer (a PPD option a panel\n"
        "                       handles, or a printer that takes job-account-id)\n"
        "\n"
        "For administrators:\n"
        "  --check              check that billing codes reach the printers and stay private:\n"
        "                       one ok, warning or problem line per finding; exit 1 on a problem\n"
        "  --printer NAME       with --check: check this queue (repeatable); default: all\n"
        "  --users N            with --check: check the server's limits for N agents\n"
        "\n"
        "--click and --type are applied in the order given. Plug-ins are also found in\n"
        "the folders of $PDEPRINT_PLUGIN_PATH (separated by ':').\n");
}

} // namespace pdeprint
