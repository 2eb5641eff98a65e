#include "fuzz/FuzzSupport.h"

#include <QApplication>
#include <QTemporaryDir>

namespace pdefuzz {

void ensureApplication()
{
    static QApplication *application = [] {
        // Each fuzzing process its own preferences, so that a file one target
        // leaves behind never becomes another target's input.
        static QTemporaryDir config;
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(config.path()));
        static int argc = 1;
        static char name[] = "pdefuzz";
        static char *argv[] = { name, nullptr };
        return new QApplication(argc, argv);
    }();
    (void)application;
}

ppd_file_t *samplePpd()
{
    static ppd_file_t *ppd = pdetest::openPpd(pdetest::samplePpdPath()).release();
    return ppd;
}

} // namespace pdefuzz
