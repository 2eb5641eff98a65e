#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

#include "tests/support/TestSupport.h"

#include <gtest/gtest.h>

namespace hosttest {

using pdetest::kTicketPrefix;

struct RunResult
{
    int exitCode = -1;
    QString out;
    QString err;
};

// Runs the built pdeprint with no standard input; it inherits this process's
// environment, so the test's preferences folder, CUPS_SERVER and display.
inline RunResult runPdeprint(const QStringList &arguments)
{
    QProcess process;
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(QStringLiteral(PDEPRINT_EXECUTABLE), arguments);
    const bool finished = process.waitForFinished(60000);
    return { finished && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
             QString::fromUtf8(process.readAllStandardOutput()), QString::fromUtf8(process.readAllStandardError()) };
}

// A headless agent; stop(), or the end of its scope, sends it SIGTERM, and it
// must leave cleanly and silently on standard error.
struct Agent
{
    explicit Agent(const QStringList &arguments,
                   const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment())
    {
        process.setProcessEnvironment(environment);
        process.setStandardInputFile(QProcess::nullDevice());
        process.start(QStringLiteral(PDEPRINT_EXECUTABLE), QStringList { "--agent", "--no-dialog" } + arguments);
    }
    ~Agent() { stop(); }
    // Its standard output: a line per job it released.
    QString stop()
    {
        if (stopped)
            return {};
        stopped = true;
        process.terminate();
        EXPECT_TRUE(process.waitForFinished(20000) && process.exitStatus() == QProcess::NormalExit
                    && process.exitCode() == 0);
        EXPECT_EQ(process.readAllStandardError(), QByteArray());
        return QString::fromUtf8(process.readAllStandardOutput());
    }
    QProcess process;
    bool stopped = false;
};

inline QString sampleText()
{
    return QStringLiteral(PDE_SOURCE_DIR "/examples/sample.txt");
}

} // namespace hosttest
