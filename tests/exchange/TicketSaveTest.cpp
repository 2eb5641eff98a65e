// What a save writes into the job's print settings.

#include "tests/exchange/ExchangeFixture.h"

#include "platform/ButtonState.h"
#include "platform/Toolkit.h"

#include <gtest/gtest.h>

using namespace exchangetest;

namespace {

const QString kSpoolTime = QStringLiteral("jp.co.nurat.print.PrintSettings.spoolTime");
const QString kMainCB = QStringLiteral("jp.co.nurat.print.PrintSettings.bc.mainCodecb");
const QString kMainCode = QStringLiteral("jp.co.nurat.print.PrintSettings.bc.mainCode");
const QString kMainCode2 = QStringLiteral("jp.co.nurat.print.PrintSettings.bc.mainCode2");
const QString kSubCB = QStringLiteral("jp.co.nurat.print.PrintSettings.bc.subCodecb");
const QString kSubCode = QStringLiteral("jp.co.nurat.print.PrintSettings.bc.subCode");
const QString kSubCode2 = QStringLiteral("jp.co.nurat.print.PrintSettings.bc.subCode2");
const QString kHold = QStringLiteral("jp.co.nurat.print.PrintSettings.bc.holdButton");

class TicketSave : public PanelOnSamplePrinter
{
protected:
    void setControls(bool mainOn, const QString &mainText, bool subOn, const QString &subText, int hold)
    {
        pde::setButtonState(panel->mainCodeCB, mainOn);
        pde::setStringValue(panel->mainCodeText, mainText);
        pde::setButtonState(panel->subCodeCB, subOn);
        pde::setStringValue(panel->subCodeText, subText);
        pde::setButtonState(panel->holdButton, hold);
    }

    std::optional<QString> ticket(const QString &key) const { return callback->recording.value(key); }
};

TEST_F(TicketSave, WritesEveryKeyInItsOrderAndTheStampOnlyOnce)
{
    setControls(true, QStringLiteral("1234"), false, QString(), 0);
    panel->saveValuesAndReturnError(nullptr);

    const QStringList order { kSpoolTime, kMainCB, kMainCode, kMainCode2, kSubCB, kSubCode, kSubCode2, kHold };
    EXPECT_EQ(callback->recording.writtenKeys(), order);
    EXPECT_EQ(ticket(kMainCB), QStringLiteral("1"));
    EXPECT_EQ(ticket(kMainCode), QStringLiteral("31323334"));
    EXPECT_EQ(ticket(kSubCB), QStringLiteral("0"));
    EXPECT_EQ(ticket(kSubCode), std::nullopt);
    EXPECT_EQ(ticket(kSubCode2), std::nullopt);
    EXPECT_EQ(ticket(kHold), QStringLiteral("0"));

    const QByteArray stamp = stampOfTicket(callback->recording);
    EXPECT_GE(stamp.size(), 16);
    EXPECT_EQ(ticket(kMainCode2)->size(), 24);
    EXPECT_EQ(decryptTicketCode(*ticket(kMainCode2), stamp), QByteArray("1234"));

    callback->recording.writes.clear();
    panel->saveValuesAndReturnError(nullptr);
    EXPECT_EQ(callback->recording.writtenKeys(), order.mid(1));
    EXPECT_EQ(stampOfTicket(callback->recording), stamp);
}

struct CodeCase
{
    const char *name;
    QString text;
    QByteArray storedBytes; // empty: both keys removed
    int base64Length;
};

TEST_F(TicketSave, CodesAreCutAndEncryptedWhateverTheirCheckBox)
{
    const CodeCase cases[] = {
        { "empty code, box on", QString(), QByteArray(), 0 },
        { "one block", QStringLiteral("1234"), "1234", 24 },
        { "exactly one block", QString(16, QLatin1Char('7')), QByteArray(16, '7'), 24 },
        { "two blocks", QString(17, QLatin1Char('7')), QByteArray(17, '7'), 44 },
        { "cut at 32 characters", QString(40, QLatin1Char('A')), QByteArray(32, 'A'), 44 },
        { "cut at 32 bytes", QString(20, QChar(0xE9)), QString(16, QChar(0xE9)).toUtf8(), 44 },
    };
    for (const CodeCase &c : cases) {
        SCOPED_TRACE(c.name);
        setControls(true, c.text, true, c.text, 1);
        panel->saveValuesAndReturnError(nullptr);
        const QByteArray stamp = stampOfTicket(callback->recording);
        EXPECT_EQ(ticket(kMainCB), QStringLiteral("1"));
        EXPECT_EQ(ticket(kHold), QStringLiteral("1"));
        for (const auto &[codeKey, cipherKey] : { std::pair { kMainCode, kMainCode2 }, std::pair { kSubCode, kSubCode2 } }) {
            if (c.storedBytes.isEmpty()) {
                EXPECT_EQ(ticket(codeKey), std::nullopt);
                EXPECT_EQ(ticket(cipherKey), std::nullopt);
                continue;
            }
            EXPECT_EQ(ticket(codeKey), hexOf(c.storedBytes));
            ASSERT_TRUE(ticket(cipherKey));
            EXPECT_EQ(ticket(cipherKey)->size(), c.base64Length);
            EXPECT_EQ(decryptTicketCode(*ticket(cipherKey), stamp), c.storedBytes);
        }
    }
}

TEST_F(TicketSave, KeepsTheTicketsStampAndReplacesOneThatIsNotAStamp)
{
    const QByteArray earlier = "Tue, 5 Mar 2024 09:07:03 +0900";
    callback->recording.setValue(kSpoolTime, hexOf(earlier));
    setControls(true, QStringLiteral("55"), false, QString(), 0);
    panel->saveValuesAndReturnError(nullptr);
    EXPECT_EQ(ticket(kSpoolTime), hexOf(earlier));
    EXPECT_EQ(decryptTicketCode(*ticket(kMainCode2), "4 09:07:03 +0900"), QByteArray("55"));

    for (const QString &bad : { hexOf("too short"), QString(300, QLatin1Char('4')), QStringLiteral("zz\u00e9") }) {
        callback->recording.setValue(kSpoolTime, bad);
        panel->saveValuesAndReturnError(nullptr);
        const QByteArray stamp = stampOfTicket(callback->recording);
        EXPECT_NE(ticket(kSpoolTime), bad);
        EXPECT_GE(stamp.size(), 16);
        EXPECT_EQ(decryptTicketCode(*ticket(kMainCode2), stamp), QByteArray("55"));
    }
}

TEST_F(TicketSave, WritesNothingWithoutSetUpControlsOrPrintSettings)
{
    auto fresh = std::make_shared<RecordingCallback>(ppd.get(), QString::fromLatin1(kPrinter));
    JpCoNuratPrintPdeQr7150kBC unseen(fresh);
    unseen.saveValuesAndReturnError(nullptr);
    EXPECT_TRUE(fresh->recording.writes.isEmpty());

    callback->settingsAvailable = false;
    panel->saveValuesAndReturnError(nullptr);
    EXPECT_TRUE(callback->recording.writes.isEmpty());
}

} // namespace
