// Saves the panel's record for one printer again and again, as a print
// dialog would at each job: the victim of the preference fault tests.
// Usage: preference_writer PRINTER TAG COUNT   (COUNT 0: until killed)
// Record i holds main code "TAG-i", sub code "TAG-i-sub", keep value i % 2.
// Prints "ready" once the panel is set up.

#include "platform/ButtonState.h"
#include "platform/Toolkit.h"
#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"
#include "tests/support/TestSupport.h"

#include <QApplication>

#include <cstdio>

int main(int argc, char **argv)
{
    // The test's environment names the offscreen platform.
    QApplication app(argc, argv);
    const QString tag = QString::fromLocal8Bit(argv[2]);
    const long count = std::strtol(argv[3], nullptr, 10);
    pdetest::PpdPtr ppd = pdetest::openPpd(pdetest::samplePpdPath());
    JpCoNuratPrintPdeQr7150kBC panel(std::make_shared<pdetest::ConstraintTestCallback>(ppd.get(), QString::fromLocal8Bit(argv[1])));
    if (!ppd || !panel.panelView()) {
        std::fprintf(stderr, "preference_writer: cannot set up the panel\n");
        return 1;
    }
    std::printf("ready\n");
    std::fflush(stdout);

    for (long i = 0; count == 0 || i < count; ++i) {
        const QString code = tag + QLatin1Char('-') + QString::number(i);
        pde::setButtonState(panel.mainCodeCB, 1);
        pde::setStringValue(panel.mainCodeText, code);
        pde::setButtonState(panel.subCodeCB, 1);
        pde::setStringValue(panel.subCodeText, code + QStringLiteral("-sub"));
        pde::setButtonState(panel.holdButton, int(i % 2));
        if (!panel.SaveUserPreference()) {
            std::fprintf(stderr, "preference_writer: save %ld failed\n", i);
            return 1;
        }
    }
    return 0;
}
