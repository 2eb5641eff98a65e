// A crash of a process saving preferences must never lose the user's record:
// the domain file always parses and holds one whole record.

#include "platform/UserDefaults.h"
#include "tests/support/TestSupport.h"

#include <QDir>
#include <QProcess>
#include <QRandomGenerator>
#include <QThread>

#include <gtest/gtest.h>

namespace {

const QString kPrinter = QStringLiteral("faults");
const QString kDomain = QStringLiteral("jp.co.nurat.mfp.faults");

QString writerPath()
{
    return QStringLiteral(PDE_PREFERENCE_WRITER);
}

void writeInitialRecord()
{
    pde::UserDefaults::resetStandardUserDefaults();
    auto defaults = pde::UserDefaults::standardUserDefaults();
    defaults->setPersistentDomain(
        { { "Billing Code", QVariantMap { { "Model Name", "Nurat QR7150K" }, { "Release Number", "1.00" },
                                          { "Main Code", "init-0" }, { "Sub Code", "init-0-sub" }, { "hold button", 0 } } },
          { "Other", "kept" } },
        kDomain);
    ASSERT_TRUE(defaults->synchronize());
}

// The record as it stands on disk, and whether it is whole: both codes and
// the keep value from the same save, and the domain's other keys kept.
struct Stored
{
    bool parses = false;
    bool whole = false;
    QString mainCode;
};

Stored readStored()
{
    Stored stored;
    pde::UserDefaults::resetStandardUserDefaults();
    const std::optional<QVariantMap> domain = pde::UserDefaults::standardUserDefaults()->persistentDomainForName(kDomain);
    if (!domain)
        return stored;
    stored.parses = true;
    const QVariantMap record = domain->value("Billing Code").toMap();
    stored.mainCode = record.value("Main Code").toString();
    const int index = stored.mainCode.section(QLatin1Char('-'), -1).toInt();
    stored.whole = domain->value("Other").toString() == QLatin1String("kept")
        && record.value("Sub Code").toString() == stored.mainCode + QStringLiteral("-sub")
        && record.value("hold button").toInt() == index % 2
        && record.value("Model Name").toString() == QLatin1String("Nurat QR7150K");
    return stored;
}

TEST(PreferenceFaults, KilledWhileSavingLeavesTheOldOrTheNewRecord)
{
    writeInitialRecord();
    QString previous = QStringLiteral("init-0");
    for (int kill = 0; kill < 200; ++kill) {
        SCOPED_TRACE(kill);
        QProcess writer;
        writer.start(writerPath(), { kPrinter, QStringLiteral("k%1").arg(kill), QStringLiteral("0") });
        ASSERT_TRUE(writer.waitForReadyRead(10000)) << "the writer never became ready";
        QThread::usleep(QRandomGenerator::global()->bounded(30000));
        writer.kill();
        ASSERT_TRUE(writer.waitForFinished(10000));

        const Stored stored = readStored();
        ASSERT_TRUE(stored.parses);
        ASSERT_TRUE(stored.whole) << "a mix of two saves: " << stored.mainCode.toStdString();
        ASSERT_TRUE(stored.mainCode == previous || stored.mainCode.startsWith(QStringLiteral("k%1-").arg(kill)))
            << "neither the old record nor one of this writer: " << stored.mainCode.toStdString();
        previous = stored.mainCode;
    }
}

TEST(PreferenceFaults, TwoWritersOfOneDomainLastWriterWins)
{
    writeInitialRecord();
    QProcess first, second;
    first.start(writerPath(), { kPrinter, QStringLiteral("a"), QStringLiteral("500") });
    second.start(writerPath(), { kPrinter, QStringLiteral("b"), QStringLiteral("500") });

    // While both write, every look at the file finds one whole record.
    int looks = 0;
    while (first.state() != QProcess::NotRunning || second.state() != QProcess::NotRunning) {
        const Stored stored = readStored();
        ASSERT_TRUE(stored.parses);
        ASSERT_TRUE(stored.whole) << stored.mainCode.toStdString();
        ++looks;
        first.waitForFinished(5);
        second.waitForFinished(5);
    }
    EXPECT_GT(looks, 10);
    ASSERT_EQ(first.exitCode(), 0) << first.readAllStandardError().toStdString();
    ASSERT_EQ(second.exitCode(), 0) << second.readAllStandardError().toStdString();

    const Stored stored = readStored();
    ASSERT_TRUE(stored.whole);
    EXPECT_TRUE(stored.mainCode == QLatin1String("a-499") || stored.mainCode == QLatin1String("b-499"))
        << stored.mainCode.toStdString();
}

} // namespace
