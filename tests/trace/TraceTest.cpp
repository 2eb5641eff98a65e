// The trace lines of one job's road through a panel, as a trace build writes them.

#include "platform/DialogTypes.h"
#include "plugin/HostUtilities.h"
#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"
#include "plugin/JpCoNuratPrintPdeQr7150kBCPDEPlugIn.h"
#include "tests/support/TestSupport.h"

#include <QFile>

#include <gtest/gtest.h>

#include <cstdio>
#include <unistd.h>

namespace {

// Everything written to stderr while it lives, kept in a file.
class StderrCapture
{
public:
    StderrCapture()
    {
        std::fflush(stderr);
        m_saved = dup(STDERR_FILENO);
        dup2(fileno(m_file), STDERR_FILENO);
    }
    ~StderrCapture() { release(); }

    // The trace lines written so far (other output is left out).
    QStringList traceLines()
    {
        release();
        std::rewind(m_file);
        QFile file;
        QStringList lines;
        if (!file.open(m_file, QIODevice::ReadOnly))
            return lines;
        for (const QString &line : QString::fromLocal8Bit(file.readAll()).split(QLatin1Char('\n'))) {
            if (line.startsWith(QLatin1String("[pde ")))
                lines.append(line);
        }
        return lines;
    }

private:
    void release()
    {
        if (m_saved < 0)
            return;
        std::fflush(stderr);
        dup2(m_saved, STDERR_FILENO);
        close(m_saved);
        m_saved = -1;
    }

    std::FILE *m_file = std::tmpfile();
    int m_saved = -1;
};

QString address(const void *pointer)
{
    return QStringLiteral("0x%1").arg(quintptr(pointer), 0, 16);
}

TEST(Trace, OneJobWritesEveryLineInOrder)
{
    auto callback = std::make_shared<pdetest::TestCallback>();
    QString error;
    QStringList lines;
    QString factoryAddress, panelAddress, view;
    {
        StderrCapture capture;
        JpCoNuratPrintPdeQr7150kBCPDEPlugIn factory;
        factoryAddress = address(&factory);
        factory.initWithBundle(nullptr);
        std::optional<pde::PanelList> panels =
            factory.PDEPanelsForType(QString::fromLatin1(pde::kPrintDialogType), callback);
        ASSERT_TRUE(panels && panels->size() == 1);
        auto *panel = dynamic_cast<JpCoNuratPrintPdeQr7150kBC *>(panels->front().get());
        ASSERT_TRUE(panel);
        panelAddress = address(panel);
        view = address(panel->panelView());
        panel->restoreValuesAndReturnError(&error);
        panel->saveValuesAndReturnError(&error);
        panel->shouldPrint();
        panel->summaryInfo();
        panels.reset();
        lines = capture.traceLines();
    }

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
