#include "platform/UserDefaults.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

using pde::UserDefaults;

// Each test gets a preferences folder of its own that does not exist yet.
class UserDefaultsTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(home.isValid());
        savedConfigHome = qgetenv("XDG_CONFIG_HOME");
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(home.path()));
        UserDefaults::resetStandardUserDefaults();
    }
    void TearDown() override
    {
        qputenv("XDG_CONFIG_HOME", savedConfigHome);
        UserDefaults::resetStandardUserDefaults();
    }

    static std::optional<QVariantMap> readFresh(const QString &name)
    {
        UserDefaults::resetStandardUserDefaults();
        return UserDefaults::standardUserDefaults()->persistentDomainForName(name);
    }
    static bool writeFresh(const QString &name, const QVariantMap &domain)
    {
        UserDefaults::resetStandardUserDefaults();
        auto defaults = UserDefaults::standardUserDefaults();
        defaults->setPersistentDomain(domain, name);
        return defaults->synchronize();
    }
    static void writeRaw(const QString &path, const QByteArray &bytes)
    {
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(bytes);
    }
    static QByteArray readRaw(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir home;
    QByteArray savedConfigHome;
};

const QString kDomain = QStringLiteral("jp.co.nurat.mfp.office");

QVariantMap sampleDomain()
{
    QVariantMap record {
        { QStringLiteral("Model Name"), QStringLiteral("Nurat QR7150K") },
        { QStringLiteral("Release Number"), QStringLiteral("1.00") },
        { QStringLiteral("Main Code"), QStringLiteral("A 1: b@c, d; e # f = g") },
        { QStringLiteral("Sub Code"), QStringLiteral("@Invalid()") },
        { QStringLiteral("Japanese"), QStringLiteral("部門コード ü") },
        { QStringLiteral("Quoted"), QStringLiteral(" \"lead\\trail\" ") },
        { QStringLiteral("Empty"), QString(QLatin1String("")) },
        { QStringLiteral("Main Code CheckBox"), true },
        { QStringLiteral("Sub Code CheckBox"), false },
        { QStringLiteral("hold button"), 1 },
        { QStringLiteral("Negative"), -7 },
    };
    return {
        { QStringLiteral("Billing Code"), record },
        { QStringLiteral("Other Panel"), QStringLiteral("kept: as is") },
        { QStringLiteral("Count"), 3 },
    };
}

TEST_F(UserDefaultsTest, DomainRoundTripsWithNestedRecord)
{
    ASSERT_TRUE(writeFresh(kDomain, sampleDomain()));
    const auto read = readFresh(kDomain);
    ASSERT_TRUE(read);
    const QVariantMap expected = sampleDomain();
    EXPECT_EQ(read->keys(), expected.keys());
    EXPECT_EQ(read->value(QStringLiteral("Other Panel")).toString(), QStringLiteral("kept: as is"));
    EXPECT_EQ(read->value(QStringLiteral("Count")).toInt(), 3);

    ASSERT_EQ(read->value(QStringLiteral("Billing Code")).typeId(), QMetaType::QVariantMap);
    const QVariantMap record = read->value(QStringLiteral("Billing Code")).toMap();
    const QVariantMap wanted = expected.value(QStringLiteral("Billing Code")).toMap();
    EXPECT_EQ(record.keys(), wanted.keys());
    for (auto it = wanted.cbegin(); it != wanted.cend(); ++it) {
        SCOPED_TRACE(it.key().toStdString());
        switch (it->typeId()) {
        case QMetaType::Bool:
            EXPECT_EQ(record.value(it.key()).toBool(), it->toBool());
            break;
        case QMetaType::Int:
            EXPECT_EQ(record.value(it.key()).toInt(), it->toInt());
            break;
        default:
            EXPECT_EQ(record.value(it.key()).toString(), it->toString());
        }
    }
}

TEST_F(UserDefaultsTest, EmptyDomainExistsAfterWriting)
{
    ASSERT_TRUE(writeFresh(kDomain, {}));
    const auto read = readFresh(kDomain);
    ASSERT_TRUE(read);
    EXPECT_TRUE(read->isEmpty());
}

TEST_F(UserDefaultsTest, ReadingCreatesNothing)
{
    EXPECT_FALSE(readFresh(kDomain));
    EXPECT_FALSE(readFresh(QStringLiteral("")));
    EXPECT_FALSE(QFileInfo::exists(UserDefaults::preferencesDirectory()));

    // Nor does a replacement that is never synchronised.
    UserDefaults::standardUserDefaults()->setPersistentDomain(sampleDomain(), kDomain);
    UserDefaults::resetStandardUserDefaults();
    EXPECT_FALSE(QFileInfo::exists(UserDefaults::preferencesDirectory()));
    EXPECT_FALSE(readFresh(kDomain));
}

TEST_F(UserDefaultsTest, WrittenFileIsPrivateAndAlone)
{
    ASSERT_TRUE(writeFresh(kDomain, sampleDomain()));
    ASSERT_TRUE(writeFresh(kDomain, sampleDomain()));
    const QString path = UserDefaults::fileNameForDomain(kDomain);
    // Owner read and write; nothing for group and others, on the file and its folder.
    EXPECT_EQ(QFileInfo(path).permissions().toInt() & 0x7077, 0x6000);
    EXPECT_EQ(QFileInfo(UserDefaults::preferencesDirectory()).permissions().toInt() & 0x0077, 0);
    // No temporary file is left beside it.
    EXPECT_EQ(QDir(UserDefaults::preferencesDirectory()).entryList(QDir::Files | QDir::Hidden),
              QStringList { QFileInfo(path).fileName() });
}

TEST_F(UserDefaultsTest, ReplacingKeepsWhatTheCallerKept)
{
    ASSERT_TRUE(writeFresh(kDomain, sampleDomain()));
    auto domain = readFresh(kDomain);
    ASSERT_TRUE(domain);
    QVariantMap record = domain->value(QStringLiteral("Billing Code")).toMap();
    record.insert(QStringLiteral("Main Code"), QStringLiteral("NEW"));
    record.remove(QStringLiteral("Sub Code"));
    domain->insert(QStringLiteral("Billing Code"), record);
    ASSERT_TRUE(writeFresh(kDomain, *domain));

    const auto read = readFresh(kDomain);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->value(QStringLiteral("Other Panel")).toString(), QStringLiteral("kept: as is"));
    const QVariantMap readRecord = read->value(QStringLiteral("Billing Code")).toMap();
    EXPECT_EQ(readRecord.value(QStringLiteral("Main Code")).toString(), QStringLiteral("NEW"));
    EXPECT_FALSE(readRecord.contains(QStringLiteral("Sub Code")));
    EXPECT_EQ(readRecord.value(QStringLiteral("Japanese")).toString(), QStringLiteral("部門コード ü"));
}

TEST_F(UserDefaultsTest, EveryDomainNameStaysInsideTheFolderAndApart)
{
    const QStringList names {
        QStringLiteral("jp.co.nurat.mfp.office/duplex"), QStringLiteral("jp.co.nurat.mfp.office%2Fduplex"),
        QStringLiteral(".."), QStringLiteral("../escape"), QStringLiteral("a/../../escape"),
        QStringLiteral("/etc/passwd"), QStringLiteral(".hidden"), QStringLiteral("jp.co.nurat.mfp.プリンタ"),
    };
    const QString folder = QDir(UserDefaults::preferencesDirectory()).absolutePath();
    QSet<QString> files;
    int n = 0;
    for (const QString &name : names) {
        SCOPED_TRACE(name.toStdString());
        const QString path = UserDefaults::fileNameForDomain(name);
        EXPECT_EQ(QFileInfo(path).absolutePath(), folder);
        EXPECT_FALSE(QFileInfo(path).fileName().startsWith(QLatin1Char('.')));
        files.insert(path);
        ASSERT_TRUE(writeFresh(name, { { QStringLiteral("n"), ++n } }));
    }
    EXPECT_EQ(files.size(), names.size());
    // Nothing was written outside the folder, and each name reads its own domain.
    EXPECT_EQ(QDir(home.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
              QStringList { QStringLiteral("print-preferences") });
    EXPECT_EQ(qsizetype(QDir(folder).entryList(QDir::Files | QDir::Hidden).size()), names.size());
    n = 0;
    for (const QString &name : names) {
        const auto read = readFresh(name);
        ASSERT_TRUE(read) << name.toStdString();
        EXPECT_EQ(read->value(QStringLiteral("n")).toInt(), ++n) << name.toStdString();
    }
}

TEST_F(UserDefaultsTest, ResetRereadsAFileChangedBehindItsBack)
{
    ASSERT_TRUE(writeFresh(kDomain, { { QStringLiteral("code"), QStringLiteral("AAAA") } }));
    auto defaults = UserDefaults::standardUserDefaults();
    ASSERT_EQ(defaults->persistentDomainForName(kDomain)->value(QStringLiteral("code")).toString(),
              QStringLiteral("AAAA"));

    // Same size and the same time stamp: only the content tells.
    const QString path = UserDefaults::fileNameForDomain(kDomain);
    const QDateTime stamp = QFileInfo(path).lastModified();
    QByteArray bytes = readRaw(path);
    ASSERT_TRUE(bytes.contains("AAAA"));
    bytes.replace("AAAA", "BBBB");
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        file.write(bytes);
        file.setFileTime(stamp, QFileDevice::FileModificationTime);
    }
    UserDefaults::resetStandardUserDefaults();
    auto fresh = UserDefaults::standardUserDefaults();
    EXPECT_NE(fresh.get(), defaults.get());
    const auto read = fresh->persistentDomainForName(kDomain);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->value(QStringLiteral("code")).toString(), QStringLiteral("BBBB"));
}

TEST_F(UserDefaultsTest, DamagedFileReadsAsAbsentAndIsKept)
{
    const QString path = UserDefaults::fileNameForDomain(kDomain);
    const QList<QByteArray> damaged {
        QByteArray("[Billing%20Code\nMain%20Code=1\n"),
        QByteArray("\x00\x01\x02garbage\xff\xfe", 10),
        QByteArray("[Billing%20Code]\nthis line is no key\n"),
        QByteArray("[Billing%20Code]\nMain%20Code=\xff\xfe\n"),
        QByteArray("code=@Variant(\\0\\0\\0\\x7f)\n"),
    };
    for (const QByteArray &bytes : damaged) {
        SCOPED_TRACE(bytes.toHex().toStdString());
        writeRaw(path, bytes);
        EXPECT_FALSE(readFresh(kDomain));
        // A replacement does not silently destroy what the user may still repair.
        EXPECT_FALSE(writeFresh(kDomain, sampleDomain()));
        EXPECT_EQ(readRaw(path), bytes);
    }
}

TEST_F(UserDefaultsTest, FolderInThePlaceOfAFileReadsAsAbsent)
{
    const QString path = UserDefaults::fileNameForDomain(kDomain);
    ASSERT_TRUE(QDir().mkpath(path));
    EXPECT_FALSE(readFresh(kDomain));
    EXPECT_FALSE(writeFresh(kDomain, sampleDomain()));
    EXPECT_TRUE(QFileInfo(path).isDir());
}

} // namespace
