// What a save writes into the job's print settings.

#include "tests/exchange/ExchangeFixture.h"

#include "platform/ButtonState.h"
#include "platform/Toolkit.h"

using namespace exchangetest;

namespace {

using TicketSave = PanelOnSamplePrinter;

TEST_F(TicketSave, CodesAreCutAndEncryptedWhateverTheirCheckBox)
{
    const QString e16(16, QChar(0xE9));
    const struct { const char *name; int box; QString text; QByteArray bytes; } cases[] = {
        { "empty code, box on: both keys removed", 1, QString(), QByteArray() },
        { "mixed box written as off; 20 bytes in two blocks", -1, QString(20, QLatin1Char('1')), QByteArray(20, '1') },
        { "cut at 32 characters", 1, QString(40, QLatin1Char('A')), QByteArray(32, 'A') },
        { "a one-byte character after 32 bytes is cut", 1, e16 + QLatin1Char('A'), e16.toUtf8() },
    };
    // The sub code and the keep button change apart from the main code, so that no key takes another's control.
    int hold = 0;
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const bool mainOn = c.box == 1;
        hold = 1 - hold;
        pde::setButtonState(panel->mainCodeCB, c.box);
        pde::setStringValue(panel->mainCodeText, c.text);
        pde::setButtonState(panel->subCodeCB, !mainOn);
        pde::setStringValue(panel->subCodeText, QStringLiteral("5"));
        pde::setButtonState(panel->holdButton, hold);
        panel->saveValuesAndReturnError(nullptr);
        EXPECT_EQ(ticket("bc.mainCodecb"), QString::number(mainOn));
        EXPECT_EQ(ticket("bc.mainCode"), c.bytes.isEmpty() ? std::nullopt : std::optional(hexOf(c.bytes)));
        EXPECT_EQ(ticket("bc.mainCode2"), encrypted(c.bytes));
        EXPECT_EQ(ticket("bc.subCodecb"), QString::number(!mainOn));
        EXPECT_EQ(ticket("bc.subCode"), QStringLiteral("35"));
        EXPECT_EQ(ticket("bc.subCode2"), encrypted("5"));
        EXPECT_EQ(ticket("bc.holdButton"), QString::number(hold));
    }
}

TEST_F(TicketSave, KeepsTheTicketsStampAndReplacesOneThatIsNotAStamp)
{
    pde::setButtonState(panel->mainCodeCB, 1);
    pde::setStringValue(panel->mainCodeText, QStringLiteral("55"));
    const QString spoolTime = QStringLiteral("spoolTime");
    const struct { QString text; bool kept; } cases[] = {
        { hexOf(QByteArray(16, 'x')), true }, { hexOf(QByteArray(63, 'x')), true }, { hexOf(QByteArray(15, 'x')), false },
        // 64 characters leave no room for the terminator.
        { hexOf(QByteArray(64, 'x')), false },
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.text.toStdString());
        callback->settings.setValue(kTicketPrefix + spoolTime, c.text);
        panel->saveValuesAndReturnError(nullptr);
        EXPECT_EQ(ticket(spoolTime) == c.text, c.kept);
        EXPECT_EQ(ticket("bc.mainCode2"), encrypted("55"));
    }
}

TEST_F(TicketSave, WritesNothingWithoutSetUpControls)
{
    JpCoNuratPrintPdeQr7150kBC unseen(callback);
    unseen.saveValuesAndReturnError(nullptr);
    EXPECT_TRUE(callback->settings.keys().isEmpty());
}

} // namespace
