// One job from the dialog's opening to the printed ticket and the stored
// record, driven by clicks and keys on a shown panel.

#include "tests/exchange/ExchangeFixture.h"

#include "platform/ButtonState.h"

#include <QTest>

using namespace exchangetest;

TEST(RoadOfOneJob, KeptCodesComeBackAreChangedAndReachTheTicket)
{
    pdetest::writeDomain(QVariantMap { { "Billing Code", QVariantMap { { "Model Name", "Nurat QR7150K" },
                                                                         { "Release Number", "1.00" },
                                                                         { "Main Code CheckBox", true },
                                                                         { "Main Code", "1111" },
                                                                         { "hold button", 1 } } } });
    pdetest::PpdPtr ppd = pdetest::openPpd(pdetest::samplePpdPath());
    ASSERT_TRUE(ppd);
    auto callback = std::make_shared<pdetest::ConstraintTestCallback>(ppd.get());
    JpCoNuratPrintPdeQr7150kBC panel(callback);
    QWidget *view = panel.panelView();
    ASSERT_TRUE(view);
    view->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(view));
    panel.restoreValuesAndReturnError(nullptr);
    EXPECT_EQ(pde::buttonState(panel.mainCodeCB), 1);
    EXPECT_EQ(panel.mainCodeText->text(), QStringLiteral("1111"));
    EXPECT_TRUE(panel.mainCodeText->isReadOnly()) << "kept codes lock the controls";

    // The user unlocks, changes the main code, locks again and prints.
    QTest::mouseClick(panel.holdButton, Qt::LeftButton);
    EXPECT_FALSE(panel.mainCodeText->isReadOnly());
    panel.mainCodeText->setFocus();
    panel.mainCodeText->selectAll();
    QTest::keyClicks(panel.mainCodeText, QStringLiteral("2024-A"));
    QTest::mouseClick(panel.holdButton, Qt::LeftButton);
    panel.saveValuesAndReturnError(nullptr);
    panel.shouldPrint();

    const pde::PrintSettings &ticket = callback->settings;
    const QByteArray stamp = QByteArray::fromHex(ticket.value(kTicketPrefix + "spoolTime").value_or(QString()).toLatin1());
    EXPECT_EQ(ticket.value(kTicketPrefix + "bc.mainCodecb"), QStringLiteral("1"));
    EXPECT_EQ(ticket.value(kTicketPrefix + "bc.mainCode"), hexOf("2024-A"));
    EXPECT_EQ(pdetest::aes128Ecb(stamp.right(16), QByteArray::fromBase64(ticket.value(kTicketPrefix + "bc.mainCode2")->toLatin1()), false),
              QByteArray("2024-A").leftJustified(16, '\0'));
    EXPECT_EQ(ticket.value(kTicketPrefix + "bc.holdButton"), QStringLiteral("1"));
    EXPECT_EQ(pdetest::readRecord().value("Main Code"), QVariant("2024-A"));
    EXPECT_EQ(panel.prefHoldButtonFlag, 1u) << "the stored record is pending for the next job";
}
