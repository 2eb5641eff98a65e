// The per-queue record on real domain files.

#include "tests/exchange/ExchangeFixture.h"

#include "platform/ButtonState.h"
#include "platform/Toolkit.h"
#include "platform/UserDefaults.h"

#include <QFileInfo>

using namespace exchangetest;

namespace {

// A record as typed text, for whole-record comparison: QVariant's == would
// take "true" for true.
QMap<QString, QString> asText(const QVariantMap &record)
{
    QMap<QString, QString> text;
    for (auto it = record.cbegin(); it != record.cend(); ++it)
        text.insert(it.key(), QString::fromLatin1(it->typeName()) + QLatin1Char(' ') + it->toString());
    return text;
}

QVariantMap fullRecord(const QString &model, const QString &release)
{
    return { { "Model Name", model }, { "Release Number", release }, { "Main Code CheckBox", true },
             { "Main Code", "1111" }, { "Sub Code CheckBox", true }, { "Sub Code", "22" },
             { "hold button", 1 }, { "Colour", "blue" } };
}

// The record as the first release stored it: every value text.
QVariantMap asTextValues(QVariantMap record)
{
    for (QVariant &value : record)
        value = value.toString();
    return record;
}

std::unique_ptr<JpCoNuratPrintPdeQr7150kBC> panelFor(const std::shared_ptr<RecordingCallback> &callback)
{
    auto panel = std::make_unique<JpCoNuratPrintPdeQr7150kBC>(callback);
    panel->panelView();
    return panel;
}

class StoredPreferences : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(ppd); }

    pdetest::PpdPtr ppd = pdetest::openPpd(pdetest::samplePpdPath());
    std::shared_ptr<RecordingCallback> callback = std::make_shared<RecordingCallback>(ppd.get(), QString::fromLatin1(kPrinter));
};

TEST_F(StoredPreferences, NoDomainIsNeverCreated)
{
    writeDomain(std::nullopt);
    auto panel = panelFor(callback);
    EXPECT_EQ(panel->preferenceName, QString::fromLatin1(kDomain));
    EXPECT_FALSE(panel->SaveUserPreference());
    panel->shouldPrint();
    EXPECT_FALSE(QFileInfo::exists(pde::UserDefaults::fileNameForDomain(QString::fromLatin1(kDomain))));
}

TEST_F(StoredPreferences, CheckResetsRecordsOfAnotherModelOrRelease)
{
    const QString model = QString::fromLatin1(kModel);
    const QVariantMap reset { { "Model Name", model }, { "Release Number", "1.00" }, { "Main Code CheckBox", false },
                              { "Sub Code CheckBox", false } };
    QVariantMap resetKeepingColour = reset;
    resetKeepingColour.insert("Colour", "blue");
    const struct { const char *name; std::optional<QVariantMap> record; QVariantMap expected; } cases[] = {
        { "valid record is kept", fullRecord(model, "1.00"), fullRecord(model, "1.00") },
        { "first release's text gets its types", asTextValues(fullRecord(model, "1.00")), fullRecord(model, "1.00") },
        { "another model", fullRecord("Nurat QR5000", "1.00"), resetKeepingColour },
        { "another release", fullRecord(model, "1.0"), resetKeepingColour },
        { "model compared case-sensitively", fullRecord(model.toUpper(), "1.00"), resetKeepingColour },
        { "no record yet", std::nullopt, reset },
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        QVariantMap domain { { "Other", "x" } };
        if (c.record)
            domain.insert("Billing Code", *c.record);
        writeDomain(domain);
        panelFor(callback);
        const std::optional<QVariantMap> stored = readDomain();
        ASSERT_TRUE(stored);
        EXPECT_EQ(stored->value("Other"), QVariant("x"));
        EXPECT_EQ(asText(record(*stored)), asText(c.expected));
    }
}

TEST_F(StoredPreferences, SaveStoresTheControlsWhateverTheKeepButtonAndLoadsThemAgain)
{
    for (int hold : { 0, 1 }) {
        SCOPED_TRACE(hold);
        writeDomain(QVariantMap { { "Billing Code", fullRecord(QString::fromLatin1(kModel), "1.00") } });
        auto panel = panelFor(callback);
        pde::setButtonState(panel->mainCodeCB, 1);
        pde::setStringValue(panel->mainCodeText, QStringLiteral("a b:c@d"));
        pde::setButtonState(panel->subCodeCB, 0);
        pde::setStringValue(panel->subCodeText, QString());
        pde::setButtonState(panel->holdButton, hold);
        EXPECT_TRUE(panel->SaveUserPreference());

        QVariantMap expected = fullRecord(QString::fromLatin1(kModel), "1.00");
        expected.insert("Main Code", "a b:c@d");
        expected.insert("Sub Code CheckBox", false);
        expected.insert("Sub Code", "");
        expected.insert("hold button", hold);
        EXPECT_EQ(asText(record(*readDomain())), asText(expected));

        panel->GetUserPreference();
        EXPECT_EQ(panel->prefHoldButtonFlag, quint32(hold));
        EXPECT_EQ(panel->prefMainCodeStringRef.toString(), QStringLiteral("a b:c@d"));
        EXPECT_FALSE(panel->prefSubCodeCBBooleanRef.toBool());
    }
}

TEST_F(StoredPreferences, LoadWithoutRecordLeavesTheFieldsCleared)
{
    writeDomain(QVariantMap { { "Billing Code", fullRecord(QString::fromLatin1(kModel), "1.00") } });
    auto panel = panelFor(callback);
    EXPECT_EQ(panel->prefHoldButtonFlag, 1u);
    writeDomain(QVariantMap { { "Other", "x" } });
    panel->GetUserPreference();
    EXPECT_EQ(panel->prefHoldButtonFlag, 0u);
    for (const QVariant *field : { &panel->prefMainCodeCBBooleanRef, &panel->prefMainCodeStringRef,
                                   &panel->prefSubCodeCBBooleanRef, &panel->prefSubCodeStringRef })
        EXPECT_FALSE(field->isValid());
}

} // namespace
