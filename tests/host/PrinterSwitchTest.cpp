// Choosing another queue in the dialog: the panels are rebuilt for it, so each
// queue's kept codes show and the job carries the codes of the queue printed to;
// a file is not among the destinations.

#include "host/CommandLine.h"
#include "host/PrintCommand.h"
#include "tests/host/PdeprintProcess.h"
#include "tests/support/PrivateScheduler.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPrintDialog>
#include <QTextStream>
#include <QTimer>

#include <cups/cups.h>
#include <gtest/gtest.h>

using namespace hosttest;

namespace {

pdetest::SchedulerEnvironment *const scheduler =
    pdetest::SchedulerEnvironment::add({ .queues = { { "alpha", false, {} }, { "beta", false, {} } } });

void keepCode(const QString &queue, const QString &code)
{
    const RunResult result = runPdeprint({ "--no-dialog", "--printer", queue, "--click", "mainCodeCB",
                                           "--type", "mainCodeText=" + code, "--click", "holdButton", sampleText() });
    ASSERT_EQ(result.exitCode, 0) << qPrintable(result.err);
}

} // namespace

TEST(PrinterSwitch, EachQueueShowsItsOwnKeptCodesAndTheJobCarriesTheChosenOnes)
{
    ASSERT_TRUE(scheduler->error.isEmpty()) << qPrintable(scheduler->error);
    // The dialog test beside this one points pdeprint and libcups at a scheduler of its own.
    qputenv("CUPS_SERVER", scheduler->scheduler.server().toUtf8());
    cupsSetServer(scheduler->scheduler.server().toUtf8().constData());
    keepCode("alpha", "1111");
    keepCode("beta", "2222");

    // What the user sees on each queue, read once the dialog is up; then the
    // second queue is chosen, and after it the job is printed. A file is never
    // among the destinations.
    QStringList seen;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        auto *dialog = qobject_cast<QPrintDialog *>(QApplication::activeModalWidget());
        auto *field = dialog ? dialog->findChild<QLineEdit *>(QStringLiteral("mainCodeText")) : nullptr;
        if (!field || !field->isVisible())
            return;
        seen << field->text();
        EXPECT_EQ(dialog->windowTitle(), "Print sample.txt");
        EXPECT_EQ(dialog->findChildren<QLineEdit *>(QStringLiteral("mainCodeText")).size(), 1)
            << "the first queue's view stayed in the dialog";
        auto *printers = dialog->findChild<QComboBox *>(QStringLiteral("printers"));
        EXPECT_FALSE(printers && printers->findText(QStringLiteral("PDF"), Qt::MatchContains) >= 0);
        if (seen.size() == 1 && printers)
            printers->setCurrentIndex(printers->findText(QStringLiteral("beta")));
        else
            dialog->accept();
    });
    poll.start(100);

    pdeprint::Options options;
    options.mode = pdeprint::DialogMode::Dialog;
    options.dryRun = true;
    options.printer = QStringLiteral("alpha");
    options.files = QStringList { sampleText() };
    QString out, err;
    QTextStream outStream(&out), errStream(&err);
    EXPECT_EQ(pdeprint::runPrintCommand(options, outStream, errStream), 0) << qPrintable(err);

    EXPECT_EQ(seen, QStringList({ "1111", "2222" }));
    EXPECT_TRUE(out.split('\n').contains(kTicketPrefix + "bc.mainCode=32323232")) << qPrintable(out);
}
