// What a restore puts into the controls, from the ticket or from a pending
// stored record.

#include "tests/exchange/ExchangeFixture.h"

#include "platform/ButtonState.h"
#include "platform/Toolkit.h"

#include <gtest/gtest.h>

using namespace exchangetest;

namespace {

const QString kPrefix = QStringLiteral("jp.co.nurat.print.PrintSettings.");

class TicketRestore : public PanelOnSamplePrinter
{
protected:
    void setTicket(const QMap<QString, QString> &values)
    {
        for (const QString &key : callback->recording.keys())
            callback->recording.setValue(key, std::nullopt);
        for (auto it = values.cbegin(); it != values.cend(); ++it)
            callback->recording.setValue(kPrefix + it.key(), it.value());
    }

    int state(QAbstractButton *button) const { return pde::buttonState(button); }
};

struct TicketCase
{
    const char *name;
    QMap<QString, QString> ticket;
    int hold, main, sub;
    QString mainText, subText;
};

TEST_F(TicketRestore, FillsTheControlsFromTheTicket)
{
    const TicketCase cases[] = {
        { "all on", { { "bc.holdButton", "1" }, { "bc.mainCodecb", "1" }, { "bc.mainCode", "31323334" },
                      { "bc.subCodecb", "1" }, { "bc.subCode", "35" } }, 1, 1, 1, "1234", "5" },
        { "empty ticket", {}, 0, 0, 0, "", "" },
        { "only bit 0 of the keep value counts", { { "bc.holdButton", "3" } }, 1, 0, 0, "", "" },
        { "an even keep value is off", { { "bc.holdButton", "2" } }, 0, 0, 0, "", "" },
        { "a keep value of -1 is on", { { "bc.holdButton", "-1" } }, 1, 0, 0, "", "" },
        { "a keep value that is no number is off", { { "bc.holdButton", "on" } }, 0, 0, 0, "", "" },
        { "states are the leading integer of any value", { { "bc.holdButton", "1" + QString(300, QLatin1Char(' ')) },
          { "bc.mainCodecb", QStringLiteral("1\u00e9") } }, 1, 1, 0, "", "" },
        { "check box value 0 is off", { { "bc.mainCodecb", "0" }, { "bc.mainCode", "31" } }, 0, 0, 0, "", "" },
        { "upper-case hex round-trips", { { "bc.mainCodecb", "1" }, { "bc.mainCode", "4A" } }, 0, 1, 0, "J", "" },
        { "lower-case hex decodes to other bytes", { { "bc.mainCodecb", "1" }, { "bc.mainCode", "4a" } }, 0, 1, 0, "j", "" },
        { "bytes not valid in the encoding give an empty field", { { "bc.mainCodecb", "1" }, { "bc.mainCode", "FF" } }, 0, 1, 0, "", "" },
        { "a value too long for the ticket is absent", { { "bc.mainCodecb", "1" }, { "bc.mainCode", QString(256, QLatin1Char('4')) } }, 0, 1, 0, "", "" },
        { "a value that is not ASCII is absent", { { "bc.mainCodecb", "1" }, { "bc.mainCode", QStringLiteral("3\u00e9") } }, 0, 1, 0, "", "" },
        { "sub code on while main code off is switched off", { { "bc.subCodecb", "1" }, { "bc.subCode", "35" } }, 0, 0, 0, "", "5" },
    };
    for (const TicketCase &c : cases) {
        SCOPED_TRACE(c.name);
        pde::setStringValue(panel->mainCodeText, QStringLiteral("old"));
        setTicket(c.ticket);
        panel->restoreValuesAndReturnError(nullptr);
        EXPECT_EQ(state(panel->holdButton), c.hold);
        EXPECT_EQ(state(panel->mainCodeCB), c.main);
        EXPECT_EQ(state(panel->subCodeCB), c.sub);
        EXPECT_EQ(panel->mainCodeText->text(), c.mainText);
        EXPECT_EQ(panel->subCodeText->text(), c.subText);
    }
}

TEST_F(TicketRestore, PendingRecordFillsThePanelOnce)
{
    setTicket({ { "bc.mainCodecb", "0" }, { "bc.subCodecb", "1" }, { "bc.subCode", "39" } });
    panel->prefHoldButtonFlag = 3;
    panel->prefMainCodeCBBooleanRef = true;
    panel->prefMainCodeStringRef = QStringLiteral("4711");
    panel->prefSubCodeCBBooleanRef = false;
    panel->prefSubCodeStringRef = QStringLiteral("8");

    panel->restoreValuesAndReturnError(nullptr);
    EXPECT_EQ(state(panel->holdButton), 1);
    EXPECT_EQ(state(panel->mainCodeCB), 1);
    EXPECT_EQ(panel->mainCodeText->text(), QStringLiteral("4711"));
    EXPECT_EQ(state(panel->subCodeCB), 0);
    EXPECT_EQ(panel->prefHoldButtonFlag, 2u) << "only bit 0 is cleared";

    // The next restore reads the ticket only.
    panel->restoreValuesAndReturnError(nullptr);
    EXPECT_EQ(state(panel->holdButton), 0);
    EXPECT_EQ(state(panel->mainCodeCB), 0);
    EXPECT_EQ(panel->mainCodeText->text(), QString());
}

TEST_F(TicketRestore, PendingRecordWithMissingValues)
{
    // Main check box missing: off, whatever the ticket says; keep button on.
    setTicket({ { "bc.mainCodecb", "1" }, { "bc.subCodecb", "1" } });
    panel->prefHoldButtonFlag = 1;
    panel->restoreValuesAndReturnError(nullptr);
    EXPECT_EQ(state(panel->holdButton), 1);
    EXPECT_EQ(state(panel->mainCodeCB), 0);

    // Sub check box missing: the ticket's value stands; no stored code keeps the field's text.
    setTicket({ { "bc.subCodecb", "1" } });
    panel->prefHoldButtonFlag = 1;
    panel->prefMainCodeCBBooleanRef = true;
    pde::setStringValue(panel->mainCodeText, QStringLiteral("kept"));
    pde::setStringValue(panel->subCodeText, QStringLiteral("also kept"));
    panel->restoreValuesAndReturnError(nullptr);
    EXPECT_EQ(state(panel->mainCodeCB), 1);
    EXPECT_EQ(state(panel->subCodeCB), 1);
    EXPECT_EQ(panel->mainCodeText->text(), QStringLiteral("kept"));
    EXPECT_EQ(panel->subCodeText->text(), QStringLiteral("also kept"));
}

TEST_F(TicketRestore, WithoutPrintSettingsTheControlsStayAsTheyAre)
{
    pde::setButtonState(panel->mainCodeCB, 1);
    pde::setStringValue(panel->mainCodeText, QStringLiteral("12"));
    callback->settingsAvailable = false;
    panel->restoreValuesAndReturnError(nullptr);
    EXPECT_EQ(state(panel->mainCodeCB), 1);
    EXPECT_EQ(panel->mainCodeText->text(), QStringLiteral("12"));
}

} // namespace
