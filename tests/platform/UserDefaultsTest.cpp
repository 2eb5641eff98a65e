#include "platform/UserDefaults.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

using pde::UserDefaults;

const QString kDomain = QStringLiteral("jp.co.nurat.mfp.office");

std::optional<QVariantMap> readFresh(const QString &name)
{
    UserDefaults::resetStandardUserDefaults();
    return UserDefaults::standardUserDefaults()->persistentDomainForName(name);
}

bool writeFresh(const QString &name, const QVariantMap &domain)
{
    UserDefaults::resetStandardUserDefaults();
    auto defaults = UserDefaults::standardUserDefaults();
    defaults->setPersistentDomain(domain, name);
    return defaults->synchronize();
}

// Values come back as text; the record inside must come back as a record.
QVariantMap asText(const QVariantMap &map)
{
    QVariantMap text;
    for (auto it = map.cbegin(); it != map.cend(); ++it)
        text.insert(it.key(), it->typeId() == QMetaType::QVariantMap ? QVariant(asText(it->toMap())) : QVariant(it->toString()));
    return text;
}

// Each test gets a preferences folder of its own that does not exist yet.
class UserDefaultsTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(home.isValid());
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(home.path()));
        UserDefaults::resetStandardUserDefaults();
    }
    void TearDown() override { qputenv("XDG_CONFIG_HOME", savedConfigHome); }

    QTemporaryDir home;
    QByteArray savedConfigHome = qgetenv("XDG_CONFIG_HOME");
    const QVariantMap record { { "Main Code", "A 1: b@c, d; e # f = g" }, { "Sub Code", "@Invalid()" },
                         { "Japanese", "部門コード ü" }, { "Quoted", " \"lead\\trail\" " }, { "Empty", "" },
                         { "Main Code CheckBox", true }, { "hold button", 1 }, { "Negative", -7 } };
    const QVariantMap domain { { "Billing Code", record }, { "Other Panel", "kept: as is" }, { "Count", 3 } };
};

TEST_F(UserDefaultsTest, ReadingCreatesNothingAndAWrittenDomainRoundTripsPrivately)
{
    EXPECT_FALSE(readFresh(QStringLiteral("")));
    // Nor does a replacement that is never synchronised.
    UserDefaults::standardUserDefaults()->setPersistentDomain(domain, kDomain);
    EXPECT_FALSE(readFresh(kDomain));
    EXPECT_FALSE(QFileInfo::exists(UserDefaults::preferencesDirectory()));

    // A replacement, not a merge: what the caller dropped is gone.
    ASSERT_TRUE(writeFresh(kDomain, { { "Dropped", 1 } }));
    ASSERT_TRUE(writeFresh(kDomain, domain));
    EXPECT_EQ(asText(readFresh(kDomain).value_or(QVariantMap())), asText(domain));

    const QString path = UserDefaults::fileNameForDomain(kDomain);
    EXPECT_EQ(QFileInfo(path).permissions().toInt() & 0x7077, 0x6000);
    EXPECT_EQ(QFileInfo(UserDefaults::preferencesDirectory()).permissions().toInt() & 0x0077, 0);
    // No temporary file is left beside it.
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
    EXPECT_EQ(QDir(home.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
              QStringList { QStringLiteral("print-preferences") });
    for (int n = 0; n < names.size(); ++n)
        EXPECT_EQ(readFresh(names[n]).value_or(QVariantMap()).value("n").toInt(), n) << n;
}

TEST_F(UserDefaultsTest, ResetRereadsAFileChangedBehindItsBack)
{
    ASSERT_TRUE(writeFresh(kDomain, { { "code", "AAAA" } }));
    ASSERT_EQ(UserDefaults::standardUserDefaults()->persistentDomainForName(kDomain), (QVariantMap { { "code", "AAAA" } }));

    // Same size and the same time stamp: only the content tells.
    const QString path = UserDefaults::fileNameForDomain(kDomain);
    const QDateTime stamp = QFileInfo(path).lastModified();
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    const QByteArray bytes = file.readAll();
    ASSERT_TRUE(bytes.contains("AAAA"));
    file.seek(0);
    file.write(QByteArray(bytes).replace("AAAA", "BBBB"));
    file.setFileTime(stamp, QFileDevice::FileModificationTime);
    file.close();
    EXPECT_EQ(readFresh(kDomain), (QVariantMap { { "code", "BBBB" } }));
}

TEST_F(UserDefaultsTest, DamagedFileReadsAsAbsentAndIsKept)
{
    const QString path = UserDefaults::fileNameForDomain(kDomain);
    QDir().mkpath(UserDefaults::preferencesDirectory());
    const QList<QByteArray> damaged { "[Billing%20Code\nMain%20Code=1\n", QByteArray("\x00\x01\x02garbage\xff\xfe", 10),
                                      "[Billing%20Code]\nthis line is no key\n", "[Billing%20Code]\nMain%20Code=\xff\xfe\n",
                                      "code=@Variant(\\0\\0\\0\\x7f)\n" };
    for (const QByteArray &bytes : damaged) {
        SCOPED_TRACE(bytes.toHex().toStdString());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(bytes);
        file.close();
        EXPECT_FALSE(readFresh(kDomain));
        // A replacement does not destroy what the user may still repair.
        EXPECT_FALSE(writeFresh(kDomain, domain));
        QFile kept(path);
        EXPECT_TRUE(kept.open(QIODevice::ReadOnly) && kept.readAll() == bytes);
    }
    // Nor does a folder in the place of the file count as a domain.
    ASSERT_TRUE(QFile::remove(path) && QDir().mkpath(path));
    EXPECT_FALSE(readFresh(kDomain));
    EXPECT_FALSE(writeFresh(kDomain, domain));
    EXPECT_TRUE(QFileInfo(path).isDir());
}

} // namespace
