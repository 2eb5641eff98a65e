// What a restore puts into the controls, from the ticket or from a pending
// stored record.

#include "tests/exchange/ExchangeFixture.h"

#include "platform/ButtonState.h"
#include "platform/Toolkit.h"

using namespace exchangetest;

namespace {

class TicketRestore : public PanelOnSamplePrinter
{
protected:
    void setTicket(const QMap<QString, QString> &values)
    {
        for (const QString &key : callback->settings.keys())
            callback->settings.setValue(key, std::nullopt);
        for (auto it = values.cbegin(); it != values.cend(); ++it)
            callback->settings.setValue(kTicketPrefix + "bc." + it.key(), it.value());
    }
    // The controls after a restore: keep button, main and sub check box, main and sub code.
    QString restored()
    {
        panel->restoreValuesAndReturnError(nullptr);
        return QStringLiteral("%1 %2 %3 [%4] [%5]").arg(pde::buttonState(panel->holdButton)).arg(pde::buttonState(panel->mainCodeCB))
            .arg(pde::buttonState(panel->subCodeCB)).arg(panel->mainCodeText->text(), panel->subCodeText->text());
    }
};

TEST_F(TicketRestore, FillsTheControlsFromTheTicket)
{
    const struct { const char *name; QMap<QString, QString> ticket; const char *expected; bool settings = true; } cases[] = {
        { "all on", { { "holdButton", "1" }, { "mainCodecb", "1" }, { "mainCode", "31323334" }, { "subCodecb", "1" },
                      { "subCode", "35" } }, "1 1 1 [1234] [5]" },
        { "without print settings the controls stay as they are", {}, "1 1 1 [old] [5]", false },
        { "an even keep value is off; a negative one clamps to an even one", { { "holdButton", "-3000000000" } }, "0 0 0 [] []" },
        { "a keep value of -1 is on", { { "holdButton", "-1" } }, "1 0 0 [] []" },
        { "states are the leading integer of any value, after blanks, signed, clamped to 32 bits",
          { { "holdButton", " +4294967296" + QString(300, ' ') }, { "mainCodecb", "-1\u00e9" } }, "1 1 0 [] []" },
        { "check box value 0 is off", { { "mainCodecb", "0" }, { "mainCode", "31" } }, "0 0 0 [] []" },
        { "lower-case hex decodes to other bytes", { { "mainCodecb", "1" }, { "mainCode", "4a" } }, "0 1 0 [j] []" },
        { "bytes not valid in the encoding", { { "mainCodecb", "1" }, { "mainCode", "FF" } }, "0 1 0 [] []" },
        { "a value too long for the ticket is absent", { { "mainCodecb", "1" }, { "mainCode", QString(256, '4') } }, "0 1 0 [] []" },
        { "a value that is not ASCII is absent", { { "mainCodecb", "1" }, { "mainCode", "0\u00a0" } }, "0 1 0 [] []" },
        { "sub code on while main code off is switched off", { { "subCodecb", "1" }, { "subCode", "35" } }, "0 0 0 [] [5]" },
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        pde::setStringValue(panel->mainCodeText, QStringLiteral("old"));
        setTicket(c.ticket);
        callback->settingsAvailable = c.settings;
        EXPECT_EQ(restored(), c.expected);
    }
}

// The stored record fills the panel once; a missing value is read differently for each check box.
TEST_F(TicketRestore, PendingRecordFillsThePanelOnce)
{
    const QMap<QString, QString> ticket { { "mainCodecb", "1" }, { "mainCode", "31" }, { "subCodecb", "1" }, { "subCode", "39" } };
    const struct { const char *name; QVariant mainOn, mainCode, subOn, subCode; const char *expected; } cases[] = {
        { "all stored", true, "4711", false, "8", "1 1 0 [4711] []" },
        { "no main check box: off", {}, "4711", true, "8", "1 0 0 [] [8]" },
        { "no sub check box: the ticket's; no codes: the fields'", true, {}, {}, {}, "1 1 1 [kept] [kept]" },
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        setTicket(ticket);
        pde::setStringValue(panel->mainCodeText, QStringLiteral("kept"));
        pde::setStringValue(panel->subCodeText, QStringLiteral("kept"));
        panel->prefHoldButtonFlag = 3;
        panel->prefMainCodeCBBooleanRef = c.mainOn;
        panel->prefMainCodeStringRef = c.mainCode;
        panel->prefSubCodeCBBooleanRef = c.subOn;
        panel->prefSubCodeStringRef = c.subCode;
        EXPECT_EQ(restored(), c.expected);
        EXPECT_FALSE(panel->mainCodeCB->isEnabled()) << "the keep button locks the main check box";
        EXPECT_EQ(panel->prefHoldButtonFlag, 2u) << "only bit 0 is cleared";
        EXPECT_EQ(restored(), "0 1 1 [1] [9]") << "the next restore reads the ticket only";
    }
}

} // namespace
