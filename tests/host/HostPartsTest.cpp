// The host's pieces: job options, constraint answers, preference domains,
// printable files.

#include "host/HostCallback.h"
#include "host/JobOptions.h"
#include "host/PreferenceDomains.h"
#include "host/PrintableFile.h"
#include "platform/UserDefaults.h"
#include "tests/support/TestSupport.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace pdeprint;

TEST(JobOptions, PanelHandledPpdOptionsNeverLeaveTheHost)
{
    pde::PrintSettings settings;
    settings.setValue("jp.co.nurat.print.PrintSettings.bc.mainCode", QString("31323334"));
    settings.setValue("ARMainCode", QString("On"));
    settings.setValue("copies", QString("7")); // a panel's value wins over the dialog's
    const JobOptions options = makeJobOptions(settings, { "ARMainCode", "ARSubCode" },
                                              { { "ARSubCode", "On" }, { "media", "A4" } },
                                              DialogSettings { 2, "1-2", "one-sided" });
    const QMap<QString, QString> expected {
        { "copies", "7" }, { "jp.co.nurat.print.PrintSettings.bc.mainCode", "31323334" }, { "media", "A4" },
        { "page-ranges", "1-2" }, { "sides", "one-sided" },
    };
    EXPECT_EQ(options.all(), expected);
    EXPECT_EQ(options.settings.keys(), (QStringList { "copies", "jp.co.nurat.print.PrintSettings.bc.mainCode" }));
}

TEST(JobOptions, DialogDefaultsAddNothing)
{
    EXPECT_TRUE(makeJobOptions(pde::PrintSettings(), {}, {}, DialogSettings()).all().isEmpty());
}

TEST(HostCallback, ConstraintsOfThePpdDecideAndARefusedChoiceKeepsTheMark)
{
    pdetest::PpdPtr ppd = pdetest::openPpd(pdetest::samplePpdPath());
    ASSERT_TRUE(ppd);
    ppdMarkDefaults(ppd.get());
    HostCallback callback(pde::Printer { "office", {} }, ppd.get());
    auto marked = [&](const char *option) { return QString::fromUtf8(ppdFindMarkedChoice(ppd.get(), option)->choice); };

    EXPECT_FALSE(callback.willChangePPDOptionKeyValue("ARSubCode", "On")) << "sub code needs the main code";
    EXPECT_EQ(marked("ARSubCode"), "Off");
    EXPECT_FALSE(callback.willChangePPDOptionKeyValue("ARMainCode", "Sometimes"));
    EXPECT_FALSE(callback.willChangePPDOptionKeyValue("NoSuchOption", "On"));
    EXPECT_TRUE(callback.willChangePPDOptionKeyValue("ARMainCode", "On"));
    EXPECT_TRUE(callback.willChangePPDOptionKeyValue("ARSubCode", "On"));
    EXPECT_EQ(marked("ARSubCode"), "On");
    EXPECT_FALSE(callback.willChangePPDOptionKeyValue("ARMainCode", "Off")) << "would leave the sub code alone";
    EXPECT_EQ(marked("ARMainCode"), "On");

    HostCallback withoutPpd(pde::Printer { "office", {} }, nullptr);
    EXPECT_FALSE(withoutPpd.willChangePPDOptionKeyValue("ARMainCode", "On"));
}

TEST(PreferenceDomains, AMissingDomainIsCreatedEmptyAndAnExistingOneIsLeftAlone)
{
    QTemporaryDir config;
    qputenv("XDG_CONFIG_HOME", config.path().toUtf8());
    pde::UserDefaults::resetStandardUserDefaults();
    auto defaults = pde::UserDefaults::standardUserDefaults();
    defaults->setPersistentDomain({ { "kept", "yes" } }, "a.office");
    ASSERT_TRUE(defaults->synchronize());

    QString error;
    ASSERT_TRUE(ensurePreferenceDomains({ "a.", "b.", "b." }, "office", &error)) << qPrintable(error);
    pde::UserDefaults::resetStandardUserDefaults();
    defaults = pde::UserDefaults::standardUserDefaults();
    EXPECT_EQ(defaults->persistentDomainForName("a.office"), (QVariantMap { { "kept", "yes" } }));
    EXPECT_EQ(defaults->persistentDomainForName("b.office"), QVariantMap());
    EXPECT_FALSE(defaults->persistentDomainForName("b.other"));
}

TEST(PrintableFile, OnlyReadableDocumentsOfAPrintableTypePass)
{
    QTemporaryDir dir;
    auto write = [&](const char *name, const QByteArray &bytes) {
        QFile file(dir.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    };
    const QString text = write("a.txt", "hello\n");
    const QString pdf = write("b.bin", "%PDF-1.4\n%\xe2\xe3\xcf\xd3\n1 0 obj\n<<>>\nendobj\ntrailer\n<<>>\n%%EOF\n");
    const QString binary = write("c.txt", QByteArray("\x7f" "ELF\x02\x01\x01\0\0\0\0\0\0\0\0\0\x03\0", 18));
    const QString empty = write("d.txt", "");
    const QString unreadable = write("e.txt", "secret\n");
    QFile::setPermissions(unreadable, {});
    const bool root = QFile(unreadable).open(QIODevice::ReadOnly);

    struct Case { QString path; bool printable; const char *reasonPart; };
    const Case cases[] = {
        { text, true, "" },
        { pdf, true, "" },
        { binary, false, "cannot be printed" },
        { empty, false, "empty" },
        { dir.filePath("missing.txt"), false, "no such file" },
        { dir.path(), false, "not a regular file" },
    };
    for (const Case &c : cases) {
        QString error;
        EXPECT_EQ(isPrintableFile(c.path, &error), c.printable) << qPrintable(c.path);
        EXPECT_TRUE(error.contains(QString::fromUtf8(c.reasonPart))) << qPrintable(error);
    }
    if (!root) {
        QString error;
        EXPECT_FALSE(isPrintableFile(unreadable, &error));
        EXPECT_TRUE(error.contains("cannot be read")) << qPrintable(error);
    }
}
