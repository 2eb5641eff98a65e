#pragma once

// What the Qt benchmarks share: offscreen Qt and private preference and
// runtime folders, set before the QApplication exists; and the benchmark run.

#include <QTemporaryDir>
#include <QtGlobal>

#include <benchmark/benchmark.h>

class BenchEnvironment
{
public:
    BenchEnvironment()
    {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("XDG_CONFIG_HOME", m_config.path().toUtf8());
        // Private (0700), as Qt wants it; saves a warning a process.
        qputenv("XDG_RUNTIME_DIR", m_runtime.path().toUtf8());
    }

private:
    QTemporaryDir m_config;
    QTemporaryDir m_runtime;
};

inline int runBenchmarks(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
