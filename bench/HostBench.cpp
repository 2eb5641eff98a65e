// What the plug-in costs a host process: loading the module cold beside
// loading one of Qt's own plug-ins, and a whole headless pdeprint run beside
// the same program's start-up without a QApplication and beside a bare
// QApplication + QPrinter program (wall time ratio and peak memory).

#include "bench/BenchEnvironment.h"
#include "platform/Bundle.h"
#include "platform/DialogTypes.h"
#include "platform/PanelFactory.h"
#include "tests/support/TestSupport.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QLibraryInfo>
#include <QPluginLoader>
#include <QProcess>

#include <sys/resource.h>
#include <sys/wait.h>

#include <algorithm>
#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace {

// The benchmark library keeps the pointer of an error text, not a copy.
void skipWithError(benchmark::State &state, const QString &why)
{
    static std::string message;
    message = why.toStdString();
    state.SkipWithError(message.c_str());
}

QString ourModule()
{
    return pdetest::pluginBuildDirectory() + QStringLiteral("/billingcode.so");
}

// The lightest of Qt's plug-ins: no library of its own beyond QtGui.
QString qtImagePlugin()
{
    return QLibraryInfo::path(QLibraryInfo::PluginsPath) + QStringLiteral("/imageformats/libqgif.so");
}

// --- cold loads ---------------------------------------------------------------

// A module cannot be loaded cold twice in one process: ours stays mapped after
// unload() (its C++ symbols are process-unique), so each load is timed in a
// child process of its own, started as the host is (a QApplication, the same
// libraries linked), from just before the load to just after the last step.
enum class LoadSteps { RootObject, HostRoad };

qint64 loadOnceInChild(const QString &path, LoadSteps steps)
{
    QElapsedTimer timer;
    if (steps == LoadSteps::RootObject) {
        timer.start();
        QPluginLoader loader(path);
        if (!loader.instance())
            return -1;
        return timer.nsecsElapsed();
    }
    const auto ppd = pdetest::openPpd(pdetest::samplePpdPath());
    auto host = std::make_shared<pdetest::ConstraintTestCallback>(ppd.get());
    timer.start();
    QString error;
    const auto bundle = pde::Bundle::loadPlugIn(path, &error);
    auto *factory = bundle ? qobject_cast<pde::PanelFactory *>(bundle->principalObject()) : nullptr;
    if (!factory || !factory->initWithBundle(bundle.get()))
        return -1;
    const auto panels = factory->PDEPanelsForType(QString::fromLatin1(pde::kPrintDialogType), host);
    if (!panels || panels->size() != 1)
        return -1;
    return timer.nsecsElapsed();
}

constexpr char kChildOption[] = "--load-once-in-child";

void loadInChild(benchmark::State &state, const QString &path, LoadSteps steps)
{
    const QStringList arguments { QString::fromLatin1(kChildOption), path, QString::number(int(steps)) };
    for (auto _ : state) {
        QProcess child;
        child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        child.start(QCoreApplication::applicationFilePath(), arguments);
        bool ok = false;
        const qint64 nanoseconds =
            child.waitForFinished(60000) ? child.readAllStandardOutput().trimmed().toLongLong(&ok) : -1;
        if (!ok || nanoseconds < 0) {
            skipWithError(state, path + QStringLiteral(": the child could not load it"));
            return;
        }
        state.SetIterationTime(double(nanoseconds) / 1e9);
    }
}

// --- whole processes ----------------------------------------------------------

QString pdeprint()
{
    return QStringLiteral(PDEBENCH_PDEPRINT);
}

QStringList dryRunArguments()
{
    return { QStringLiteral("--no-dialog"), QStringLiteral("--dry-run"),
             QStringLiteral("--ppd"), pdetest::examplePath(QStringLiteral("nurat-qr7150k.ppd")),
             QStringLiteral("--printer"), QStringLiteral("demo"),
             QStringLiteral("--click"), QStringLiteral("mainCodeCB"),
             QStringLiteral("--type"), QStringLiteral("mainCodeText=1234"),
             pdetest::examplePath(QStringLiteral("sample.txt")) };
}

double childCpuSeconds()
{
    rusage usage {};
    getrusage(RUSAGE_CHILDREN, &usage);
    return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec)
        + double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

// Runs pdeprint to its end each iteration; the wall time is the figure, the
// child's CPU time per run is a counter.
void runPdeprint(benchmark::State &state, const QStringList &arguments)
{
    const double cpuBefore = childCpuSeconds();
    for (auto _ : state) {
        QProcess process;
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(pdeprint(), arguments);
        if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
            skipWithError(state, QStringLiteral("pdeprint failed: ") + arguments.join(QLatin1Char(' ')));
            return;
        }
        benchmark::DoNotOptimize(process.readAllStandardOutput());
    }
    state.counters["child_cpu_ms"] =
        benchmark::Counter((childCpuSeconds() - cpuBefore) * 1e3, benchmark::Counter::kAvgIterations);
}

// One whole run of a program: its wall time and its own peak resident size,
// from wait4 so that each child is measured alone.
struct ChildRun
{
    double wallMs = -1;
    double peakMiB = 0;
};

// The child gets this process's environment, with the Qt platform replaced
// when one is given.
ChildRun runOnce(const QString &program, const QStringList &arguments, const QByteArray &platform = {})
{
    QList<QByteArray> storage { QFile::encodeName(program) };
    for (const QString &argument : arguments)
        storage << argument.toLocal8Bit();
    std::vector<char *> argv;
    for (QByteArray &item : storage)
        argv.push_back(item.data());
    argv.push_back(nullptr);
    const QByteArray platformEntry = "QT_QPA_PLATFORM=" + platform;
    std::vector<char *> environment;
    for (char **entry = environ; *entry; ++entry) {
        if (platform.isEmpty() || !QByteArray(*entry).startsWith("QT_QPA_PLATFORM="))
            environment.push_back(*entry);
    }
    if (!platform.isEmpty())
        environment.push_back(const_cast<char *>(platformEntry.constData()));
    environment.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    QElapsedTimer timer;
    timer.start();
    pid_t pid = 0;
    const int spawned = posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), environment.data());
    posix_spawn_file_actions_destroy(&actions);
    ChildRun run;
    int status = 0;
    rusage usage {};
    if (spawned != 0 || wait4(pid, &status, 0, &usage) != pid || !WIFEXITED(status) || WEXITSTATUS(status) != 0)
        return run;
    run.wallMs = double(timer.nsecsElapsed()) / 1e6;
    run.peakMiB = double(usage.ru_maxrss) / 1024.0;
    return run;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

// The headless dry run beside a program that only makes a QApplication and a
// QPrinter, in turns, so that both see the same machine load. The iteration
// time is the dry run's; the counters are medians over the iterations. The
// bare program runs on the given Qt platform: offscreen, as the environment
// says, or minimal, the one pdeprint picks itself for a run without a window.
void dryRunBesideBarePrinter(benchmark::State &state, const char *barePlatform)
{
    std::vector<double> dryMs, bareMs, ratios, dryPeak, barePeak;
    for (auto _ : state) {
        const ChildRun bare = runOnce(QStringLiteral(PDEBENCH_BARE_PRINTER), {}, barePlatform);
        const ChildRun dry = runOnce(pdeprint(), dryRunArguments());
        if (bare.wallMs < 0 || dry.wallMs < 0) {
            skipWithError(state, QStringLiteral("a run failed"));
            return;
        }
        state.SetIterationTime(dry.wallMs / 1e3);
        dryMs.push_back(dry.wallMs);
        bareMs.push_back(bare.wallMs);
        ratios.push_back(dry.wallMs / bare.wallMs);
        dryPeak.push_back(dry.peakMiB);
        barePeak.push_back(bare.peakMiB);
    }
    state.counters["dry_run_ms"] = median(dryMs);
    state.counters["bare_ms"] = median(bareMs);
    state.counters["wall_ratio"] = median(ratios);
    state.counters["dry_run_peak_MiB"] = median(dryPeak);
    state.counters["bare_peak_MiB"] = median(barePeak);
    state.counters["peak_above_MiB"] = median(dryPeak) - median(barePeak);
}

void pdeprintVersion(benchmark::State &state)
{
    runPdeprint(state, { QStringLiteral("--version") });
}

void pdeprintDryRun(benchmark::State &state)
{
    runPdeprint(state, dryRunArguments());
}

} // namespace

// Each child costs a process start; the manual time is the load's alone.
constexpr int kChildren = 40;
BENCHMARK_CAPTURE(loadInChild, ours, ourModule(), LoadSteps::RootObject)
    ->Name("cold_load/billingcode.so,root_object")
    ->UseManualTime()->Iterations(kChildren)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(loadInChild, host_road, ourModule(), LoadSteps::HostRoad)
    ->Name("cold_load/billingcode.so,loadPlugIn+initWithBundle+PDEPanelsForType")
    ->UseManualTime()->Iterations(kChildren)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(loadInChild, qt, qtImagePlugin(), LoadSteps::RootObject)
    ->Name("cold_load/ref:qt_imageformats_libqgif.so,root_object")
    ->UseManualTime()->Iterations(kChildren)->Unit(benchmark::kMicrosecond);

BENCHMARK(pdeprintDryRun)->Name("process/pdeprint_dry_run")->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(pdeprintVersion)->Name("process/ref:pdeprint_--version")->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(dryRunBesideBarePrinter, offscreen, "offscreen")
    ->Name("process/pdeprint_dry_run,beside_ref:QApplication+QPrinter,offscreen")
    ->UseManualTime()->Iterations(20)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(dryRunBesideBarePrinter, minimal, "minimal")
    ->Name("process/pdeprint_dry_run,beside_ref:QApplication+QPrinter,minimal")
    ->UseManualTime()->Iterations(20)->Unit(benchmark::kMillisecond);

// A QApplication for the plug-ins, and private preferences for the panels and
// for the pdeprint processes, which inherit the environment.
int main(int argc, char **argv)
{
    BenchEnvironment environment;
    QApplication app(argc, argv);
    if (argc == 4 && QLatin1String(argv[1]) == QLatin1String(kChildOption)) {
        const qint64 nanoseconds = loadOnceInChild(QString::fromLocal8Bit(argv[2]), LoadSteps(atoi(argv[3])));
        printf("%lld\n", static_cast<long long>(nanoseconds));
        return nanoseconds < 0 ? 1 : 0;
    }
    return runBenchmarks(argc, argv);
}
