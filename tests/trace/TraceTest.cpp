// The trace lines of one job's road through a panel, as a trace build writes them.

#include "platform/DialogTypes.h"
#include "plugin/HostUtilities.h"
#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"
#include "plugin/JpCoNuratPrintPdeQr7150kBCPDEPlugIn.h"
#include "tests/support/TestSupport.h"

#include <QFile>

#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <unistd.h>

namespace {

// The trace lines that `road` writes to stderr; other output is left out.
QStringList traceLinesOf(const std::function<void()> &road)
{
    std::FILE *file = std::tmpfile();
    if (!file)
        return {};
    std::fflush(stderr);
    const int saved = dup(STDERR_FILENO);
    dup2(fileno(file), STDERR_FILENO);
    road();
    std::fflush(stderr);
    dup2(saved, STDERR_FILENO);
    close(saved);
    std::rewind(file);
    QFile written;
    QStringList lines;
    if (written.open(file, QIODevice::ReadOnly)) {
        for (const QString &line : QString::fromLocal8Bit(written.readAll()).split(QLatin1Char('\n'))) {
            if (line.startsWith(QLatin1String("[pde ")))
                lines.append(line);
        }
    }
    std::fclose(file);
    return lines;
}

QString address(const void *pointer)
{
    return QStringLiteral("0x%1").arg(quintptr(pointer), 0, 16);
}

TEST(Trace, OneJobWritesEveryLineInOrder)
{
    auto callback = std::make_shared<pdetest::TestCallback>();
    QString error;
    QString factoryAddress, panelAddress, view;
    const QStringList lines = traceLinesOf([&] {
        JpCoNuratPrintPdeQr7150kBCPDEPlugIn factory;
        factoryAddress = address(&factory);
        factory.initWithBundle(nullptr);
        std::optional<pde::PanelList> panels =
            factory.PDEPanelsForType(QString::fromLatin1(pde::kPrintDialogType), callback);
        auto *panel = panels && panels->size() == 1 ? dynamic_cast<JpCoNuratPrintPdeQr7150kBC *>(panels->front().get())
                                                    : nullptr;
        if (!panel)
            return;
        panelAddress = address(panel);
        view = address(panel->panelView());
        panel->restoreValuesAndReturnError(&error);
        panel->saveValuesAndReturnError(&error);
        panel->shouldPrint();
        panel->summaryInfo();
    });

    const QString factoryLine = QStringLiteral("[pde %1] ").arg(factoryAddress);
    const QString panelLine = QStringLiteral("[pde %1] ").arg(panelAddress);
    const QString errorOut = address(&error), host = address(callback.get());
    const QString resize = QLatin1String(runningOnLeopardOrLater() ? "YES" : "NO");
    const QStringList expected {
        factoryLine + "-> initWithBundle:",
        factoryLine + "<- initWithBundle:=BOOL(YES)",
        factoryLine + "-> PDEPanelsForType:",
        panelLine + "-> initWithCallback:(" + host + ", " + host + ")",
        panelLine + "-- Constraint Handling Available: NO",
        panelLine + "-- Can resize on the fly: " + resize,
        panelLine + "<- initWithCallback:=id(self)",
        factoryLine + "-> PDEPanelsForType:=NSArray((" + panelAddress + "))",
        panelLine + "-> panelView:",
        panelLine + "-> --initializeUI:",
        panelLine + "<- --initializeUI:=void",
        panelLine + "<- panelView:=NSView(" + view + ", " + view + ")",
        panelLine + "-> restoreValuesAndReturnError:(" + errorOut + ")",
        panelLine + "-> --getNonPPDSettingsFromPrintSettings:",
        panelLine + "<- --getNonPPDSettingsFromPrintSettings:",
        panelLine + "-> --updateUI:",
        panelLine + "<- --updateUI:",
        panelLine + "<- restoreValuesAndReturnError:=BOOL(YES)",
        panelLine + "-> saveValuesAndReturnError:(" + errorOut + ")",
        panelLine + "-> --writeNonPPDSettingsToPrintSettings:",
        panelLine + "<- --writeNonPPDSettingsToPrintSettings:",
        panelLine + "<- saveValuesAndReturnError:=BOOL(YES)",
        panelLine + "-> shouldPrint:",
        panelLine + "<- shouldPrint:=BOOL(YES)",
        panelLine + "-> summaryInfo:",
        panelLine + "<- summaryInfo:",
    };
    EXPECT_EQ(lines, expected);
}

} // namespace
