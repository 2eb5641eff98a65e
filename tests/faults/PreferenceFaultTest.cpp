// A crash of a process saving preferences must never lose the user's record:
// the domain file always parses and holds one whole record.

#include "tests/support/TestSupport.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QThread>

#include <gtest/gtest.h>

namespace {

const QString kDomain = QStringLiteral("jp.co.nurat.mfp.faults");

void startWriter(QProcess &writer, const QString &tag, int count)
{
    writer.start(QStringLiteral(PDE_PREFERENCE_WRITER), { QStringLiteral("faults"), tag, QString::number(count) });
}

// The main code of the record on disk, if the file parses and the record is
// whole: sub code and keep value from the same save, the domain's other keys kept.
std::optional<QString> wholeRecord()
{
    const std::optional<QVariantMap> domain = pdetest::readDomain(kDomain);
    const QVariantMap record = domain.value_or(QVariantMap()).value("Billing Code").toMap();
    const QString main = record.value("Main Code").toString();
    if (domain && domain->value("Other") == "kept" && record.value("Sub Code") == main + "-sub"
        && record.value("hold button").toInt() == main.section(QLatin1Char('-'), -1).toInt() % 2)
        return main;
    return std::nullopt;
}

class PreferenceFaults : public ::testing::Test
{
protected:
    void SetUp() override
    {
        pdetest::writeDomain(QVariantMap { { "Other", "kept" },
                                           { "Billing Code", QVariantMap { { "Model Name", "Nurat QR7150K" },
                                                                           { "Release Number", "1.00" }, { "Main Code", "init-0" },
                                                                           { "Sub Code", "init-0-sub" }, { "hold button", 0 } } } },
                             kDomain);
        ASSERT_EQ(wholeRecord(), QStringLiteral("init-0"));
    }
};

TEST_F(PreferenceFaults, KilledWhileSavingLeavesTheOldOrTheNewRecord)
{
    QString previous = QStringLiteral("init-0");
    for (int kill = 0; kill < 200; ++kill) {
        SCOPED_TRACE(kill);
        QProcess writer;
        startWriter(writer, QStringLiteral("k%1").arg(kill), 0);
        ASSERT_TRUE(writer.waitForReadyRead(10000)) << "the writer never became ready";
        QThread::usleep(QRandomGenerator::global()->bounded(30000));
        writer.kill();
        ASSERT_TRUE(writer.waitForFinished(10000));

        const std::optional<QString> stored = wholeRecord();
        ASSERT_TRUE(stored) << "unreadable, or a mix of two saves";
        ASSERT_TRUE(*stored == previous || stored->startsWith(QStringLiteral("k%1-").arg(kill)))
            << "neither the old record nor one of this writer: " << stored->toStdString();
        previous = *stored;
    }
}

TEST_F(PreferenceFaults, TwoWritersOfOneDomainLastWriterWins)
{
    QProcess first, second;
    startWriter(first, QStringLiteral("a"), 500);
    startWriter(second, QStringLiteral("b"), 500);
    // While both write, every look at the file finds one whole record.
    int looks = 0;
    while (first.state() != QProcess::NotRunning || second.state() != QProcess::NotRunning) {
        ASSERT_TRUE(wholeRecord());
        ++looks;
        first.waitForFinished(5);
        second.waitForFinished(5);
    }
    EXPECT_GT(looks, 10);
    ASSERT_EQ(first.exitCode() + second.exitCode(), 0) << (first.readAllStandardError() + second.readAllStandardError()).toStdString();
    const std::optional<QString> stored = wholeRecord();
    EXPECT_TRUE(stored == QStringLiteral("a-499") || stored == QStringLiteral("b-499")) << stored.value_or("none").toStdString();
}

} // namespace
