// The per-queue record on real domain files.

#include "tests/exchange/ExchangeFixture.h"

#include "platform/ButtonState.h"
#include "platform/Toolkit.h"

#include <QJsonDocument>
#include <QJsonObject>

using namespace exchangetest;

namespace {

// A record as JSON, for whole-record comparison: QVariant's == would take "true" for true.
std::string asText(const QVariantMap &record)
{
    return QJsonDocument(QJsonObject::fromVariantMap(record)).toJson(QJsonDocument::Compact).toStdString();
}

QVariantMap fullRecord(const QString &model = QStringLiteral("Nurat QR7150K"), const QString &release = "1.00")
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

using StoredPreferences = PanelOnSamplePrinter;

TEST_F(StoredPreferences, NoDomainIsNeverCreated)
{
    EXPECT_FALSE(panel->SaveUserPreference());
    EXPECT_FALSE(pdetest::readDomain());
}

// Creation checks the record before it loads it: a record of another model never fills the panel.
TEST_F(StoredPreferences, CreationResetsRecordsOfAnotherModelOrReleaseBeforeLoadingThem)
{
    const QVariantMap reset { { "Model Name", "Nurat QR7150K" }, { "Release Number", "1.00" },
                              { "Main Code CheckBox", false }, { "Sub Code CheckBox", false } };
    QVariantMap resetKeepingColour = reset;
    resetKeepingColour.insert("Colour", "blue");
    const struct { const char *name; std::optional<QVariantMap> record; QVariantMap expected; } cases[] = {
        { "valid record is kept", fullRecord(), fullRecord() },
        { "first release's text gets its types", asTextValues(fullRecord()), fullRecord() },
        { "another release", fullRecord("Nurat QR7150K", "1.0"), resetKeepingColour },
        { "model compared case-sensitively", fullRecord("NURAT QR7150K"), resetKeepingColour },
        { "no record yet", std::nullopt, reset },
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        QVariantMap domain { { "Other", "x" } };
        if (c.record)
            domain.insert("Billing Code", *c.record);
        pdetest::writeDomain(domain);
        createPanel();
        const std::optional<QVariantMap> stored = pdetest::readDomain();
        ASSERT_TRUE(stored);
        EXPECT_EQ(stored->value("Other"), QVariant("x"));
        EXPECT_EQ(asText(pdetest::readRecord()), asText(c.expected));
        EXPECT_EQ(panel->prefHoldButtonFlag, c.expected.value("hold button").toUInt());
        EXPECT_EQ(panel->prefMainCodeStringRef, c.expected.value("Main Code"));
    }
}

// Printing stores the controls whatever the keep button and loads them again for the next restore;
// a load without a record clears them.
TEST_F(StoredPreferences, PrintingStoresTheControlsAndEveryLoadReplacesThem)
{
    for (int hold : { 0, 1 }) {
        SCOPED_TRACE(hold);
        pdetest::writeDomain(QVariantMap { { "Billing Code", fullRecord() } });
        createPanel();
        panel->restoreValuesAndReturnError(nullptr);
        pde::setButtonState(panel->mainCodeCB, 1);
        pde::setStringValue(panel->mainCodeText, QStringLiteral("a b:c@d"));
        pde::setButtonState(panel->subCodeCB, -1);
        pde::setStringValue(panel->subCodeText, QString());
        pde::setButtonState(panel->holdButton, hold);
        EXPECT_TRUE(panel->shouldPrint());

        QVariantMap expected = fullRecord();
        expected.insert("Main Code", "a b:c@d");
        expected.insert("Sub Code CheckBox", false); // a mixed box is stored as off
        expected.insert("Sub Code", "");
        expected.insert("hold button", hold);
        EXPECT_EQ(asText(pdetest::readRecord()), asText(expected));
        EXPECT_EQ(panel->prefHoldButtonFlag, quint32(hold));
        EXPECT_EQ((QVariantList { panel->prefMainCodeCBBooleanRef, panel->prefMainCodeStringRef, panel->prefSubCodeCBBooleanRef,
                                  panel->prefSubCodeStringRef }), (QVariantList { true, "a b:c@d", false, "" }));
    }
    pdetest::writeDomain(QVariantMap { { "Other", "x" } });
    panel->GetUserPreference();
    EXPECT_EQ(panel->prefHoldButtonFlag, 0u);
    for (const QVariant *field : { &panel->prefMainCodeCBBooleanRef, &panel->prefMainCodeStringRef,
                                   &panel->prefSubCodeCBBooleanRef, &panel->prefSubCodeStringRef })
        EXPECT_FALSE(field->isValid());
}

} // namespace
