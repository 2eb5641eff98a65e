// pdeprint: prints files through a print dialog with panel plug-ins, or
// drives the same panels without a window.

#include "host/CommandLine.h"
#include "host/HostTranslations.h"
#include "host/PrintCommand.h"
#include "host/agent/AgentCommand.h"
#include "host/check/CheckCommand.h"

#include <QApplication>
#include <QTextStream>

#include <cstdio>
#include <optional>

namespace {

QtMessageHandler defaultMessageHandler = nullptr;

// Qt's note about a missing runtime folder is noise on a headless machine and
// would break "one line per error" on stderr.
void messageHandler(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type == QtWarningMsg && message.startsWith(QLatin1String("QStandardPaths: XDG_RUNTIME_DIR")))
        return;
    defaultMessageHandler(type, context, message);
}

} // namespace

int main(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);

    QTextStream out(stdout);
    QTextStream err(stderr);
    const pdeprint::ParseResult parsed = pdeprint::parseCommandLine(arguments);
    if (!parsed.options) {
        err << "pdeprint: " << parsed.error << Qt::endl;
        return pdeprint::kExitUsage;
    }
    const pdeprint::Options &options = *parsed.options;
    if (options.help) {
        out << pdeprint::usageText();
        return pdeprint::kExitOk;
    }
    if (options.version) {
        out << "pdeprint " PDEPRINT_VERSION "\n";
        return pdeprint::kExitOk;
    }
    // Without a window there is no need for a display, nor a failure without
    // one. The minimal platform, unlike offscreen, loads no X11 or GL libraries
    // and reads no font configuration, which the panels' unshown views never need.
    const bool agentCommand = pdeprint::isAgentCommand(options);
    const bool windows = options.codes || (options.agent && options.mode != pdeprint::DialogMode::Headless);
    const bool headless = options.check || (agentCommand ? !windows : !pdeprint::wantsDialog(options));
    const bool display = !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
        || !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
    if (windows && !display) { // rather than Qt's abort
        err << "pdeprint: no display for the windows (--agent --no-dialog needs none)" << Qt::endl;
        return pdeprint::kExitFailure;
    }
    if (headless)
        qputenv("QT_QPA_PLATFORM", "minimal");

    defaultMessageHandler = qInstallMessageHandler(messageHandler);
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("pdeprint"));
    QApplication::setApplicationVersion(QStringLiteral(PDEPRINT_VERSION));
    // Only windows speak the user's language; lines on stdout and stderr of
    // the commands without one are for scripts and stay as they are.
    std::optional<pdeprint::HostTranslations> translations;
    if (!headless)
        translations.emplace();
    if (options.check)
        return pdeprint::runCheckCommand(options, out, err);
    return agentCommand ? pdeprint::runAgentCommand(options, out, err) : pdeprint::runPrintCommand(options, out, err);
}
