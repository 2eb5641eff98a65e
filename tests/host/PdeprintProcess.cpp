#include "tests/host/PdeprintProcess.h"

#include <QProcess>

namespace hosttest {

RunResult runPdeprint(const QStringList &arguments, QProcessEnvironment environment)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(QStringLiteral(PDEPRINT_EXECUTABLE), arguments);
    RunResult result;
    if (!process.waitForFinished(60000)) {
        process.kill();
        process.waitForFinished();
        result.err = QStringLiteral("pdeprint did not finish");
        return result;
    }
    result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    result.out = QString::fromUtf8(process.readAllStandardOutput());
    result.err = QString::fromUtf8(process.readAllStandardError());
    return result;
}

QProcessEnvironment testEnvironment(const QString &configHome)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), configHome);
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.remove(QStringLiteral("DISPLAY"));
    environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    environment.remove(QStringLiteral("PDEPRINT_PLUGIN_PATH"));
    // No scheduler unless a test starts one.
    environment.insert(QStringLiteral("CUPS_SERVER"), QStringLiteral("127.0.0.1:1"));
    return environment;
}

QString samplePpd()
{
    return QStringLiteral(PDE_SOURCE_DIR "/examples/nurat-qr7150k.ppd");
}

QString sampleText()
{
    return QStringLiteral(PDE_SOURCE_DIR "/examples/sample.txt");
}

} // namespace hosttest
