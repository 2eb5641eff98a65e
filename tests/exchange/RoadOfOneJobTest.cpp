// One job from the dialog's opening to the printed ticket and the stored record.

#include "tests/exchange/ExchangeFixture.h"

#include "platform/ButtonState.h"

#include <QTest>

#include <gtest/gtest.h>

using namespace exchangetest;

TEST(RoadOfOneJob, KeptCodesComeBackAreChangedAndReachTheTicket)
{
    writeDomain(QVariantMap { { "Billing Code", QVariantMap { { "Model Name", QString::fromLatin1(kModel) },
                                                               { "Release Number", "1.00" },
                                                               { "Main Code CheckBox", true },
                                                               { "Main Code", "1111" },
                                                               { "Sub Code CheckBox", false },
                                                               { "hold button", 1 } } } });
    pdetest::PpdPtr ppd = pdetest::openPpd(pdetest::samplePpdPath());
    ASSERT_TRUE(ppd);
    auto callback = std::make_shared<RecordingCallback>(ppd.get(), QString::fromLatin1(kPrinter));
    JpCoNuratPrintPdeQr7150kBC panel(callback);
    EXPECT_EQ(panel.prefHoldButtonFlag & 1, 1u);

    QWidget *view = panel.panelView();
    ASSERT_TRUE(view);
    view->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(view));
    panel.restoreValuesAndReturnError(nullptr);
    EXPECT_EQ(pde::buttonState(panel.holdButton), 1);
    EXPECT_EQ(pde::buttonState(panel.mainCodeCB), 1);
    EXPECT_EQ(panel.mainCodeText->text(), QStringLiteral("1111"));
    EXPECT_FALSE(panel.mainCodeCB->isEnabled()) << "kept codes lock the controls";
    EXPECT_TRUE(panel.mainCodeText->isReadOnly());
    EXPECT_EQ(panel.prefHoldButtonFlag & 1, 0u);

    // The user unlocks, changes the main code and prints.
    QTest::mouseClick(panel.holdButton, Qt::LeftButton);
    EXPECT_EQ(pde::buttonState(panel.holdButton), 0);
    EXPECT_FALSE(panel.mainCodeText->isReadOnly());
    panel.mainCodeText->setFocus();
    panel.mainCodeText->selectAll();
    QTest::keyClicks(panel.mainCodeText, QStringLiteral("2024-A"));
    QCoreApplication::processEvents();
    EXPECT_EQ(panel.mainCodeText->text(), QStringLiteral("2024-A"));
    panel.saveValuesAndReturnError(nullptr);
    panel.shouldPrint();

    const pde::PrintSettings &ticket = callback->recording;
    const QByteArray stamp = stampOfTicket(ticket);
    ASSERT_GE(stamp.size(), 16);
    const QString prefix = QStringLiteral("jp.co.nurat.print.PrintSettings.bc.");
    EXPECT_EQ(ticket.value(prefix + "mainCodecb"), QStringLiteral("1"));
    EXPECT_EQ(ticket.value(prefix + "mainCode"), hexOf("2024-A"));
    EXPECT_EQ(decryptTicketCode(ticket.value(prefix + "mainCode2").value_or(QString()), stamp), QByteArray("2024-A"));
    EXPECT_EQ(ticket.value(prefix + "subCodecb"), QStringLiteral("0"));
    EXPECT_EQ(ticket.value(prefix + "subCode"), std::nullopt);
    EXPECT_EQ(ticket.value(prefix + "subCode2"), std::nullopt);
    EXPECT_EQ(ticket.value(prefix + "holdButton"), QStringLiteral("0"));

    const QVariantMap stored = record(*readDomain());
    EXPECT_EQ(stored.value("Main Code").toString(), QStringLiteral("2024-A"));
    EXPECT_TRUE(stored.value("Main Code CheckBox").toBool());
    EXPECT_EQ(stored.value("hold button").toInt(), 0);
    EXPECT_EQ(panel.prefHoldButtonFlag, 0u) << "the record was loaded again after it was stored";
}
