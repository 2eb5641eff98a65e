#include "fuzz/FuzzSupport.h"

#include <QApplication>
#include <QDir>
#include <QFile>

#include <cstdlib>

namespace pdefuzz {

namespace {

// Each fuzzing process its own preferences, so that a file one target
// leaves behind never becomes another target's input.
QString configFolder()
{
    static const QString folder = [] {
        QByteArray path = QFile::encodeName(QDir::tempPath() + QStringLiteral("/pde-fuzz-XXXXXX"));
        return mkdtemp(path.data()) ? QFile::decodeName(path) : QDir::tempPath();
    }();
    return folder;
}

} // namespace

void ensureApplication()
{
    static QApplication *application = [] {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(configFolder()));
        static int argc = 1;
        static char name[] = "pdefuzz";
        static char *argv[] = { name, nullptr };
        return new QApplication(argc, argv);
    }();
    (void)application;
}

QString preferencesFolder()
{
    return configFolder() + QStringLiteral("/print-preferences");
}

ppd_file_t *samplePpd()
{
    static ppd_file_t *ppd = pdetest::openPpd(pdetest::samplePpdPath()).release();
    return ppd;
}

} // namespace pdefuzz
