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

#include <unistd.h>

using namespace pdeprint;

TEST(JobOptions, PanelHandledPpdOptionsNeverLeaveTheHostAndDefaultsAddNothing)
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
    EXPECT_FALSE(HostCallback(pde::Printer { "office", {} }, nullptr).willChangePPDOptionKeyValue("ARMainCode", "On"));
}

TEST(PreferenceDomains, AMissingDomainIsCreatedEmptyAndAnExistingOneIsLeftAlone)
{
    auto defaults = pde::UserDefaults::standardUserDefaults();
    defaults->setPersistentDomain({ { "kept", "yes" } }, "a.office");
    ASSERT_TRUE(defaults->synchronize());
    QString error;
    ASSERT_TRUE(ensurePreferenceDomains({ "a.", "b.", "b." }, "office", &error)) << qPrintable(error);
    pde::UserDefaults::resetStandardUserDefaults();
    defaults = pde::UserDefaults::standardUserDefaults();
    EXPECT_EQ(defaults->persistentDomainForName("a.office"), (QVariantMap { { "kept", "yes" } }));
    EXPECT_EQ(defaults->persistentDomainForName("b.office"), QVariantMap());
}

TEST(PrintableFile, OnlyReadableDocumentsOfAPrintableTypePass)
{
    QTemporaryDir dir;
    const struct { const char *name; QByteArray bytes; const char *reasonPart; } cases[] = {
        { "a.txt", "hello\n", nullptr },
        { "b.bin", "%PDF-1.4\n%\xe2\xe3\xcf\xd3\n1 0 obj\n<<>>\nendobj\ntrailer\n<<>>\n%%EOF\n", nullptr },
        { "d.txt", "", "empty" },
        { "e.txt", "secret\n", "cannot be read" }, // made unreadable below
        { "missing.txt", QByteArray(), "no such file" },
        { ".", QByteArray(), "not a regular file" },
    };
    for (const auto &[name, bytes, reasonPart] : cases) {
        QFile file(dir.filePath(name));
        if (!bytes.isNull()) {
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(bytes);
            file.close();
        }
        if (QByteArrayView(name) == "e.txt" && (!file.setPermissions({}) || ::geteuid() == 0))
            continue; // root reads anything
        QString error;
        EXPECT_EQ(isPrintableFile(file.fileName(), &error), !reasonPart) << name;
        EXPECT_TRUE(error.contains(reasonPart ? reasonPart : "")) << qPrintable(error);
    }
}
