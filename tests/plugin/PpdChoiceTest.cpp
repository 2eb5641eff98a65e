#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"
#include "plugin/JpCoNuratPrintPdeQr7150kBCPDEChoice.h"
#include "tests/support/TestSupport.h"

#include <QComboBox>

#include <gtest/gtest.h>

namespace {

using pdetest::testDataPath;

class PpdChoiceTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ppd = pdetest::openPpd(testDataPath(QStringLiteral("nurat-utf8.ppd")));
        ASSERT_TRUE(ppd);
        slot = ppdFindOption(ppd.get(), "InputSlot");
        staple = ppdFindOption(ppd.get(), "Staple");
        ASSERT_TRUE(slot && staple);
        auto list = ArrayFromPPDOption(slot);
        ASSERT_TRUE(list);
        choices = *list;
        ASSERT_EQ(choices.size(), 3);
    }

    pdetest::PpdPtr ppd;
    ppd_option_t *slot = nullptr;
    ppd_option_t *staple = nullptr;
    PDEChoiceList choices;
};

TEST_F(PpdChoiceTest, ArrayWrapsEveryChoiceInOrder)
{
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(choices.at(i)->choice(), &slot->choices[i]);
    EXPECT_EQ(choices.at(0)->ppdTitle(), QStringLiteral("Auto"));
    EXPECT_EQ(choices.at(2)->ppdTitle(), QStringLiteral("Tray2"));

    ppd_option_t empty {};
    const auto none = ArrayFromPPDOption(&empty);
    ASSERT_TRUE(none);
    EXPECT_TRUE(none->isEmpty());
    EXPECT_FALSE(ArrayFromPPDOption(nullptr));
}

TEST_F(PpdChoiceTest, SearchByKeyword)
{
    EXPECT_EQ(FindChoiceForString(QStringLiteral("Tray1"), choices), choices.at(1));
    EXPECT_EQ(FindChoiceForString(QStringLiteral("tray1"), choices), nullptr);
    EXPECT_EQ(FindChoiceForString(QString(), choices), nullptr);
    EXPECT_EQ(FindChoiceForString(QStringLiteral("Tray1"), {}), nullptr);

    const struct { QString keyword; PDEChoiceList list; qint64 index; } cases[] = {
        { QStringLiteral("Auto"), choices, 0 },
        { QStringLiteral("Tray1"), choices, 1 },
        { QStringLiteral("Manual"), choices, 3 },
        { QStringLiteral(""), choices, 3 },
        { QString(), choices, 0 },
        { QStringLiteral("Tray1"), {}, 0 },
    };
    for (const auto &c : cases)
        EXPECT_EQ(GetIndexForString(c.keyword, c.list), c.index) << c.keyword.toStdString();
}

TEST(PpdChoiceTitle, FirstSuccessfulEncodingIsKept)
{
    // libcups hands choice texts over in UTF-8, whatever the file's own encoding.
    const auto ppd = pdetest::openPpd(testDataPath(QStringLiteral("nurat-sjis.ppd")));
    ASSERT_TRUE(ppd);
    ppd_option_t *slot = ppdFindOption(ppd.get(), "InputSlot");
    ASSERT_TRUE(slot);
    auto choice = JpCoNuratPrintPdeQr7150kBCPDEChoice::choiceWithChoice(&slot->choices[1]);

    EXPECT_TRUE(choice->userTitle(pde::kStringEncodingASCII).isNull());
    EXPECT_TRUE(choice->userTitle(pde::kStringEncodingASCII).isNull()); // tried again, still not made
    EXPECT_EQ(choice->userTitle(pde::kStringEncodingUTF8), QStringLiteral("トレイ１"));
    EXPECT_EQ(choice->userTitle(pde::kStringEncodingASCII), QStringLiteral("トレイ１"));
    EXPECT_EQ(choice->userTitle(pde::kStringEncodingMacRoman), QStringLiteral("トレイ１"));
    EXPECT_EQ(choice->ppdTitle(), QStringLiteral("Tray1"));
}

TEST_F(PpdChoiceTest, PopUpHoldsOneItemAChoice)
{
    QComboBox popUp;
    popUp.addItems({ QStringLiteral("stale"), QStringLiteral("items") });
    InitPopUpFromArray(&popUp, choices, pde::kStringEncodingUTF8);
    ASSERT_EQ(popUp.count(), 3);
    const QStringList titles { QStringLiteral("Automatisch"), QStringLiteral("Fach 1"), QStringLiteral("Fach 2 – groß") };
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(popUp.itemText(i), titles.at(i));
        EXPECT_EQ(popUp.itemData(i).value<PDEChoiceRef>(), choices.at(i));
    }
    InitPopUpFromArray(&popUp, {}, pde::kStringEncodingUTF8);
    EXPECT_EQ(popUp.count(), 0);
}

TEST_F(PpdChoiceTest, MarkedThenDefaultThenNothing)
{
    JpCoNuratPrintPdeQr7150kBC panel(std::make_shared<pdetest::ConstraintTestCallback>(ppd.get()));
    ASSERT_EQ(panel.ppd, ppd.get());

    EXPECT_EQ(panel.indexOfMarkedOption(slot, "InputSlot"), 0); // the default choice
    ppdMarkOption(ppd.get(), "InputSlot", "Tray2");
    EXPECT_EQ(panel.indexOfMarkedOption(slot, "InputSlot"), 2);

    EXPECT_EQ(panel.indexOfMarkedOption(staple, "Staple"), -1); // no default, nothing marked
    ppdMarkOption(ppd.get(), "Staple", "True");
    EXPECT_EQ(panel.indexOfMarkedOption(staple, "Staple"), 1);

    // Without a PPD of its own the panel still finds the option's default.
    JpCoNuratPrintPdeQr7150kBC bare(std::make_shared<pdetest::TestCallback>());
    EXPECT_EQ(bare.indexOfMarkedOption(slot, "InputSlot"), 0);
}

class Selection : public PpdChoiceTest
{
protected:
    // The host vetting the change, or not asked at all.
    std::shared_ptr<pdetest::ConstraintTestCallback> constraints = std::make_shared<pdetest::ConstraintTestCallback>();
    std::shared_ptr<pdetest::TestCallback> plain = std::make_shared<pdetest::TestCallback>();
};

TEST_F(Selection, FromPopUp)
{
    QComboBox popUp;
    InitPopUpFromArray(&popUp, choices, pde::kStringEncodingUTF8);
    popUp.setCurrentIndex(1);

    JpCoNuratPrintPdeQr7150kBC withoutHost(plain);
    PDEChoiceRef selection = choices.at(0);
    withoutHost.getSelection(&selection, &popUp, QStringLiteral("InputSlot"));
    EXPECT_EQ(selection, choices.at(1));

    JpCoNuratPrintPdeQr7150kBC withHost(constraints);
    selection = choices.at(0);
    constraints->allow = false;
    withHost.getSelection(&selection, &popUp, QStringLiteral("InputSlot"));
    EXPECT_EQ(selection, choices.at(0));
    constraints->allow = true;
    withHost.getSelection(&selection, &popUp, QStringLiteral("InputSlot"));
    EXPECT_EQ(selection, choices.at(1));
    EXPECT_EQ(constraints->asked, (QStringList { QStringLiteral("InputSlot=Tray1"), QStringLiteral("InputSlot=Tray1") }));
}

TEST_F(Selection, FromCheckBox)
{
    auto list = ArrayFromPPDOption(staple);
    ASSERT_TRUE(list && list->size() == 2);
    const PDEChoiceList stapleChoices = *list;
    QCheckBox box;

    JpCoNuratPrintPdeQr7150kBC withoutHost(plain);
    PDEChoiceRef selection;
    box.setChecked(true);
    withoutHost.getSelection(&selection, stapleChoices, &box, QStringLiteral("Staple"));
    EXPECT_EQ(selection, stapleChoices.at(1));
    box.setChecked(false);
    withoutHost.getSelection(&selection, stapleChoices, &box, QStringLiteral("Staple"));
    EXPECT_EQ(selection, stapleChoices.at(0));

    JpCoNuratPrintPdeQr7150kBC withHost(constraints);
    box.setChecked(true);
    constraints->allow = false;
    withHost.getSelection(&selection, stapleChoices, &box, QStringLiteral("Staple"));
    EXPECT_EQ(selection, stapleChoices.at(0));
    constraints->allow = true;
    withHost.getSelection(&selection, stapleChoices, &box, QStringLiteral("Staple"));
    EXPECT_EQ(selection, stapleChoices.at(1));
    EXPECT_EQ(constraints->asked, (QStringList { QStringLiteral("Staple=True"), QStringLiteral("Staple=True") }));
}

} // namespace
