// The per-queue record on real domain files.

#include "tests/exchange/ExchangeFixture.h"

#include "platform/ButtonState.h"
#include "platform/Toolkit.h"
#include "platform/UserDefaults.h"

#include <QFileInfo>

#include <gtest/gtest.h>

using namespace exchangetest;

namespace {

class StoredPreferences : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ppd = pdetest::openPpd(pdetest::samplePpdPath());
        ASSERT_TRUE(ppd);
        callback = std::make_shared<RecordingCallback>(ppd.get(), QString::fromLatin1(kPrinter));
    }

    std::unique_ptr<JpCoNuratPrintPdeQr7150kBC> makePanel()
    {
        auto panel = std::make_unique<JpCoNuratPrintPdeQr7150kBC>(callback);
        panel->panelView();
        return panel;
    }

    static QVariantMap fullRecord(const QString &model, const QString &release)
    {
        return { { "Model Name", model }, { "Release Number", release }, { "Main Code CheckBox", true },
                 { "Main Code", "1111" }, { "Sub Code CheckBox", true }, { "Sub Code", "22" },
                 { "hold button", 1 }, { "Colour", "blue" } };
    }

    pdetest::PpdPtr ppd;
    std::shared_ptr<RecordingCallback> callback;
};

TEST_F(StoredPreferences, NoDomainIsNeverCreated)
{
    writeDomain(std::nullopt);
    auto panel = makePanel();
    EXPECT_EQ(panel->preferenceName, QString::fromLatin1(kDomain));
    EXPECT_FALSE(panel->prefMainCodeStringRef.isValid());
    EXPECT_FALSE(panel->SaveUserPreference());
    panel->shouldPrint();
    EXPECT_FALSE(QFileInfo::exists(pde::UserDefaults::fileNameForDomain(QString::fromLatin1(kDomain))));
}

struct CheckCase
{
    const char *name;
    QVariantMap domain;
    bool reset;
};

TEST_F(StoredPreferences, CheckResetsRecordsOfAnotherModelOrRelease)
{
    const QString model = QString::fromLatin1(kModel);
    const CheckCase cases[] = {
        { "valid record is kept", { { "Billing Code", fullRecord(model, "1.00") }, { "Other", "x" } }, false },
        { "another model", { { "Billing Code", fullRecord("Nurat QR5000", "1.00") }, { "Other", "x" } }, true },
        { "another release", { { "Billing Code", fullRecord(model, "1.0") }, { "Other", "x" } }, true },
        { "model compared case-sensitively", { { "Billing Code", fullRecord(model.toUpper(), "1.00") }, { "Other", "x" } }, true },
        { "no record yet", { { "Other", "x" } }, true },
    };
    for (const CheckCase &c : cases) {
        SCOPED_TRACE(c.name);
        writeDomain(c.domain);
        makePanel();
        const std::optional<QVariantMap> domain = readDomain();
        ASSERT_TRUE(domain);
        EXPECT_EQ(domain->value("Other"), QVariant("x"));
        const QVariantMap stored = record(*domain);
        EXPECT_EQ(stored.value("Model Name").toString(), c.reset ? model : c.domain.value("Billing Code").toMap().value("Model Name").toString());
        EXPECT_EQ(stored.value("Release Number").toString(), c.reset ? QStringLiteral("1.00") : c.domain.value("Billing Code").toMap().value("Release Number").toString());
        EXPECT_EQ(stored.value("Main Code CheckBox").toBool(), !c.reset);
        EXPECT_EQ(stored.value("Sub Code CheckBox").toBool(), !c.reset);
        EXPECT_EQ(stored.contains("Main Code"), !c.reset);
        EXPECT_EQ(stored.contains("Sub Code"), !c.reset);
        EXPECT_EQ(stored.contains("hold button"), !c.reset);
        if (c.domain.contains("Billing Code")) {
            EXPECT_EQ(stored.value("Colour"), QVariant("blue")) << "other keys of the record stay";
        }
    }
}

TEST_F(StoredPreferences, SaveStoresTheControlsAndTheKeepValue)
{
    for (int hold : { 0, 1 }) {
        SCOPED_TRACE(hold);
        writeDomain(QVariantMap { { "Billing Code", fullRecord(QString::fromLatin1(kModel), "1.00") } });
        auto panel = makePanel();
        pde::setButtonState(panel->mainCodeCB, 1);
        pde::setStringValue(panel->mainCodeText, QStringLiteral("a b:c@d"));
        pde::setButtonState(panel->subCodeCB, 0);
        pde::setStringValue(panel->subCodeText, QString());
        pde::setButtonState(panel->holdButton, hold);
        EXPECT_TRUE(panel->SaveUserPreference());

        const QVariantMap stored = record(*readDomain());
        EXPECT_TRUE(stored.value("Main Code CheckBox").toBool());
        EXPECT_EQ(stored.value("Main Code").toString(), QStringLiteral("a b:c@d"));
        EXPECT_FALSE(stored.value("Sub Code CheckBox").toBool());
        EXPECT_TRUE(stored.contains("Sub Code"));
        EXPECT_EQ(stored.value("Sub Code").toString(), QString());
        EXPECT_EQ(stored.value("hold button").toInt(), hold);
        EXPECT_EQ(stored.value("Model Name").toString(), QString::fromLatin1(kModel));

        panel->GetUserPreference();
        EXPECT_EQ(panel->prefHoldButtonFlag, quint32(hold));
        EXPECT_EQ(panel->prefMainCodeStringRef.toString(), QStringLiteral("a b:c@d"));
        EXPECT_TRUE(panel->prefMainCodeCBBooleanRef.toBool());
        EXPECT_FALSE(panel->prefSubCodeCBBooleanRef.toBool());
    }
}

TEST_F(StoredPreferences, LoadWithoutRecordLeavesTheFieldsCleared)
{
    writeDomain(QVariantMap { { "Billing Code", fullRecord(QString::fromLatin1(kModel), "1.00") } });
    auto panel = makePanel();
    EXPECT_EQ(panel->prefHoldButtonFlag, 1u);
    writeDomain(QVariantMap { { "Other", "x" } });
    panel->GetUserPreference();
    EXPECT_EQ(panel->prefHoldButtonFlag, 0u);
    EXPECT_FALSE(panel->prefMainCodeCBBooleanRef.isValid());
    EXPECT_FALSE(panel->prefMainCodeStringRef.isValid());
    EXPECT_FALSE(panel->prefSubCodeCBBooleanRef.isValid());
    EXPECT_FALSE(panel->prefSubCodeStringRef.isValid());
}

} // namespace
