#include "platform/UserDefaults.h"
#include "tests/support/TestSupport.h"

#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <limits>

namespace {

using pde::UserDefaults;
using pdetest::readDomain;
using pdetest::readFile;
using pdetest::writeFile;

const QString kDomain = QStringLiteral("jp.co.nurat.mfp.office");

// Replaces the domain without removing its file first, as a save does.
bool writeFresh(const QString &name, const QVariantMap &domain)
{
    UserDefaults::resetStandardUserDefaults();
    auto defaults = UserDefaults::standardUserDefaults();
    defaults->setPersistentDomain(domain, name);
    return defaults->synchronize();
}

// QVariant's == converts between numbers, text and booleans; the debug
// text names every value's type, nested ones too.
QString typed(const std::optional<QVariantMap> &value)
{
    QString text;
    QDebug(&text) << value.value_or(QVariantMap { { "absent", true } });
    return text;
}

// Another process's change of the same size and time stamp: only the content tells.
void rewriteInPlace(const QString &path, const QByteArray &before, const QByteArray &after)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    const QDateTime stamp = file.fileTime(QFileDevice::FileModificationTime);
    QByteArray bytes = file.readAll();
    ASSERT_TRUE(bytes.contains(before) && file.seek(0));
    ASSERT_TRUE(file.write(bytes.replace(before, after)) == bytes.size() && file.flush());
    ASSERT_TRUE(file.setFileTime(stamp, QFileDevice::FileModificationTime)); // only an open file takes a time
}

// Each test runs in a process of its own, whose preferences folder does not exist yet.
class UserDefaultsTest : public ::testing::Test
{
protected:
    QString path = UserDefaults::fileNameForDomain(kDomain);
    QString legacyPath = UserDefaults::legacyFileNameForDomain(kDomain);
};

TEST_F(UserDefaultsTest, EveryKindOfValueComesBackWithItsTypeFromAPrivateFile)
{
    const QVariantMap record { { "Main Code", "A 1: b@c, d; e # f = g / h" }, { "Sub Code", "@Invalid()" },
                               { "Japanese", "部門コード ü 😀" }, { "Quoted", " \"lead\\trail\"\n[next]=line\r\n" },
                               { "", "" }, { "/slash", true }, { "off", false }, { "hold button", 1 },
                               { "int32", std::numeric_limits<qint32>::min() },
                               { "int64", std::numeric_limits<qint64>::max() },
                               { "int64 low", std::numeric_limits<qint64>::min() }, { "Ratio", 0.25 } };
    const QVariantMap domain { { "Billing Code", record }, { "Empty", QVariantMap() },
                               { "List", QVariantList { 1, "two", QVariantMap(), QVariantList() } } };

    // A replacement that is never synchronised creates nothing.
    UserDefaults::standardUserDefaults()->setPersistentDomain(domain, kDomain);
    EXPECT_FALSE(QFileInfo::exists(UserDefaults::preferencesDirectory()));

    // A replacement, not a merge: what the caller dropped is gone.
    ASSERT_TRUE(writeFresh(kDomain, { { "Dropped", 1 } }));
    // What an interrupted write left behind goes with the next write.
    ASSERT_TRUE(writeFile(path + QStringLiteral(".AbC123.tmp"), "{\"Dropped\": 1"));
    ASSERT_TRUE(writeFresh(kDomain, domain));
    EXPECT_EQ(typed(readDomain(kDomain)), typed(domain));
    rewriteInPlace(path, "@Invalid()", "@Invalid[]");
    EXPECT_EQ(readDomain(kDomain).value_or(QVariantMap()).value("Billing Code").toMap().value("Sub Code").toString(), "@Invalid[]");

    EXPECT_EQ(QFileInfo(path).permissions().toInt() & 0x7077, 0x6000);
    EXPECT_EQ(QFileInfo(UserDefaults::preferencesDirectory()).permissions().toInt() & 0x0077, 0);
    EXPECT_EQ(QDir(UserDefaults::preferencesDirectory()).entryList(QDir::Files | QDir::Hidden),
              QStringList { QFileInfo(path).fileName() });
}

TEST_F(UserDefaultsTest, EveryDomainNameStaysInsideTheFolderAndApart)
{
    const QStringList names { "jp.co.nurat.mfp.office/duplex", "jp.co.nurat.mfp.office%2Fduplex", "..", "../escape",
                              "a/../../escape", "/etc/passwd", ".hidden", "jp.co.nurat.mfp.プリンタ" };
    for (int n = 0; n < names.size(); ++n) {
        const QFileInfo file(UserDefaults::fileNameForDomain(names[n]));
        EXPECT_EQ(file.absolutePath(), QDir(UserDefaults::preferencesDirectory()).absolutePath()) << n;
        EXPECT_FALSE(file.fileName().startsWith(QLatin1Char('.'))) << n;
        ASSERT_TRUE(writeFresh(names[n], { { "n", n } }));
    }
    EXPECT_EQ(QDir(qEnvironmentVariable("XDG_CONFIG_HOME")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
              QStringList { QStringLiteral("print-preferences") });
    for (int n = 0; n < names.size(); ++n)
        EXPECT_EQ(readDomain(names[n]).value_or(QVariantMap()).value("n").toInt(), n) << n;
    // Where the first release's files are found; a relative XDG_CONFIG_HOME counts as unset.
    qputenv("XDG_CONFIG_HOME", "relative");
    EXPECT_EQ(UserDefaults::legacyFileNameForDomain("q@h+x/i j"), QDir::homePath() + "/.config/print-preferences/q@h+x%2Fi%20j.ini");
}

TEST_F(UserDefaultsTest, DamagedFileReadsAsAbsentAndIsKept)
{
    const QByteArray tooDeep = QByteArray("{\"a\":").repeated(40) + "1" + QByteArray("}").repeated(40);
    const struct { const char *name; bool legacy; QByteArray bytes; } damaged[] = {
        { "cut short", false, "{\"Billing Code\": {\"Main Code\": \"1\"" },
        { "not a dictionary", false, "[\"Billing Code\"]" },
        { "null value", false, "{\"Main Code\": null}" },
        { "nested too deep", false, tooDeep },
        { "INI group cut short", true, "[Billing%20Code\nMain%20Code=1\n" },
        { "INI line that is no key", true, "[Billing%20Code]\nthis line is no key\n" },
        { "INI value of no type", true, "code=@Variant(\\0\\0\\0\\x7f)\n" },
        { "INI key with leading slash", true, "[%2Fa]\nb=1\n" },
    };
    for (const auto &c : damaged) {
        SCOPED_TRACE(c.name);
        QFile::remove(path);
        QFile::remove(legacyPath);
        const QString file = c.legacy ? legacyPath : path;
        ASSERT_TRUE(writeFile(file, c.bytes));
        EXPECT_FALSE(readDomain(kDomain));
        // A replacement does not destroy what the user may still repair.
        EXPECT_FALSE(writeFresh(kDomain, { { "code", "1" } }));
        EXPECT_EQ(readFile(file), c.bytes);
        EXPECT_EQ(QFileInfo::exists(path), !c.legacy);
    }

    // A domain holding a value that would not read back is not written.
    ASSERT_TRUE(QFile::remove(legacyPath));
    for (const QVariant &value : { QVariant(QDateTime::currentDateTime()), QVariant(qQNaN()) }) {
        EXPECT_FALSE(writeFresh(kDomain, { { "value", value } }));
        EXPECT_FALSE(QFileInfo::exists(path));
    }
}

TEST_F(UserDefaultsTest, FirstReleaseRecordIsReadAsTextAfreshAndTheNextWriteKeepsItAsJson)
{
    // As the first release wrote it.
    ASSERT_TRUE(writeFile(legacyPath, "[General]\nOther=AAAA\n\n[Billing%20Code]\n"
                                      "Main%20Code=\" 12; 34 \"\nMain%20Code%20CheckBox=true\n"));
    const QVariantMap asText { { "Other", "AAAA" },
                               { "Billing Code", QVariantMap { { "Main Code", " 12; 34 " }, { "Main Code CheckBox", "true" } } } };
    EXPECT_EQ(typed(readDomain(kDomain)), typed(asText));
    rewriteInPlace(legacyPath, "AAAA", "BBBB");
    EXPECT_EQ(readDomain(kDomain).value_or(QVariantMap()).value("Other"), "BBBB");

    const QByteArray iniBytes = readFile(legacyPath);
    const QVariantMap changed { { "Other", 7 } };
    ASSERT_TRUE(writeFresh(kDomain, changed));
    EXPECT_EQ(typed(readDomain(kDomain)), typed(changed));
    EXPECT_EQ(readFile(legacyPath), iniBytes);
}

} // namespace
