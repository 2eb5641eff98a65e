#include "tests/support/TestSupport.h"

#include <QFile>

namespace pdetest {

QString testDataPath(const QString &name)
{
    return QStringLiteral(PDE_TEST_DATA_DIR "/") + name;
}

QString examplePath(const QString &name)
{
    return QStringLiteral(PDE_EXAMPLES_DIR "/") + name;
}

QString pluginBuildDirectory()
{
    return QStringLiteral(PDE_PLUGIN_BUILD_DIR);
}

QString samplePpdPath()
{
    return examplePath(QStringLiteral("nurat-qr7150k.ppd"));
}

void PpdCloser::operator()(ppd_file_t *ppd) const
{
    ppdClose(ppd);
}

PpdPtr openPpd(const QString &path)
{
    return PpdPtr(ppdOpenFile(QFile::encodeName(path).constData()));
}

TestCallback::TestCallback(ppd_file_t *ppdFile, const QString &printer)
    : ppd(ppdFile)
{
    if (!printer.isEmpty())
        session.setCurrentPrinter(pde::Printer { printer, QString() });
}

bool ConstraintTestCallback::willChangePPDOptionKeyValue(const QString &option, const QString &choice)
{
    asked << option + QLatin1Char('=') + choice;
    return allow;
}

} // namespace pdetest
