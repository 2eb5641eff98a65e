// The trace lines of one job's road through a panel, as a trace build writes them.

#include "platform/DialogTypes.h"
#include "plugin/HostUtilities.h"
#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"
#include "plugin/JpCoNuratPrintPdeQr7150kBCPDEPlugIn.h"
#include "tests/support/TestSupport.h"

#include <gtest/gtest.h>

namespace {

QString address(const void *pointer)
{
    return QStringLiteral("0x%1").arg(quintptr(pointer), 0, 16);
}

TEST(Trace, OneJobWritesEveryLineInOrder)
{
    auto callback = std::make_shared<pdetest::TestCallback>();
    QString error;
    JpCoNuratPrintPdeQr7150kBCPDEPlugIn factory;
    testing::internal::CaptureStderr();
    factory.initWithBundle(nullptr);
    std::optional<pde::PanelList> panels = factory.PDEPanelsForType(QString::fromLatin1(pde::kPrintDialogType), callback);
    auto *panel = panels && panels->size() == 1 ? dynamic_cast<JpCoNuratPrintPdeQr7150kBC *>(panels->front().get()) : nullptr;
    const QString view = address(panel ? panel->panelView() : nullptr);
    if (panel) {
        panel->restoreValuesAndReturnError(&error);
        panel->saveValuesAndReturnError(&error);
        panel->shouldPrint();
        panel->summaryInfo();
    }
    QStringList lines = QString::fromStdString(testing::internal::GetCapturedStderr()).split(QLatin1Char('\n'));
    lines.removeIf([](const QString &line) { return !line.startsWith(QLatin1String("[pde ")); });
    ASSERT_TRUE(panel);

    // Each line names the object it comes from.
    const QString f = QStringLiteral("[pde %1] ").arg(address(&factory)), p = QStringLiteral("[pde %1] ").arg(address(panel));
    const QString errorOut = address(&error), host = address(callback.get());
    const QString resize = QLatin1String(runningOnLeopardOrLater() ? "YES" : "NO");
    const QStringList expected {
        f + "-> initWithBundle:", f + "<- initWithBundle:=BOOL(YES)",
        f + "-> PDEPanelsForType:",
        p + "-> initWithCallback:(" + host + ", " + host + ")",
        p + "-- Constraint Handling Available: NO", p + "-- Can resize on the fly: " + resize,
        p + "<- initWithCallback:=id(self)",
        f + "-> PDEPanelsForType:=NSArray((" + address(panel) + "))",
        p + "-> panelView:",
        p + "-> --initializeUI:", p + "<- --initializeUI:=void",
        p + "<- panelView:=NSView(" + view + ", " + view + ")",
        p + "-> restoreValuesAndReturnError:(" + errorOut + ")",
        p + "-> --getNonPPDSettingsFromPrintSettings:", p + "<- --getNonPPDSettingsFromPrintSettings:",
        p + "-> --updateUI:", p + "<- --updateUI:",
        p + "<- restoreValuesAndReturnError:=BOOL(YES)",
        p + "-> saveValuesAndReturnError:(" + errorOut + ")",
        p + "-> --writeNonPPDSettingsToPrintSettings:", p + "<- --writeNonPPDSettingsToPrintSettings:",
        p + "<- saveValuesAndReturnError:=BOOL(YES)",
        p + "-> shouldPrint:", p + "<- shouldPrint:=BOOL(YES)",
        p + "-> summaryInfo:", p + "<- summaryInfo:",
    };
    EXPECT_EQ(lines, expected);
}

} // namespace
