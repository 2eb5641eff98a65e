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
        ASSERT_TRUE(ppd);
        slot = ppdFindOption(ppd.get(), "InputSlot");
        staple = ppdFindOption(ppd.get(), "Staple");
        ASSERT_TRUE(slot && staple);
        choices = ArrayFromPPDOption(slot).value_or(PDEChoiceList());
        ASSERT_EQ(choices.size(), 3);
    }

    pdetest::PpdPtr ppd = pdetest::openPpd(testDataPath(QStringLiteral("nurat-utf8.ppd")));
    ppd_option_t *slot = nullptr, *staple = nullptr;
    PDEChoiceList choices;
};

TEST_F(PpdChoiceTest, ArrayWrapsEveryChoiceInOrderAndIsSearchedByKeyword)
{
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(choices.at(i)->choice(), &slot->choices[i]);
    ppd_option_t empty {};
    EXPECT_EQ(ArrayFromPPDOption(&empty), std::optional<PDEChoiceList>(PDEChoiceList()));
    EXPECT_FALSE(ArrayFromPPDOption(nullptr));

    EXPECT_EQ(FindChoiceForString(QStringLiteral("Tray1"), choices), choices.at(1));
    EXPECT_EQ(FindChoiceForString(QStringLiteral("tray1"), choices), nullptr);
    EXPECT_EQ(FindChoiceForString(QString(), choices), nullptr);
    const struct { QString keyword; PDEChoiceList list; qint64 index; } cases[] = {
        { QStringLiteral("Tray1"), choices, 1 }, { QStringLiteral("Manual"), choices, 3 },
        { QStringLiteral(""), choices, 3 },      { QString(), choices, 0 },
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
    EXPECT_TRUE(choice->userTitle(pde::kStringEncodingASCII).isNull()) << "a failure is not kept";
    EXPECT_EQ(choice->userTitle(pde::kStringEncodingUTF8), QStringLiteral("トレイ１"));
    // Kept, even where another encoding would read the bytes differently.
    EXPECT_EQ(choice->userTitle(pde::kStringEncodingMacRoman), QStringLiteral("トレイ１"));
}

TEST_F(PpdChoiceTest, MarkedThenDefaultThenNothing)
{
    JpCoNuratPrintPdeQr7150kBC panel(std::make_shared<pdetest::ConstraintTestCallback>(ppd.get()));
    EXPECT_EQ(panel.indexOfMarkedOption(slot, "InputSlot"), 0); // the default choice
    ppdMarkOption(ppd.get(), "InputSlot", "Tray2");
    EXPECT_EQ(panel.indexOfMarkedOption(slot, "InputSlot"), 2);
    EXPECT_EQ(panel.indexOfMarkedOption(staple, "Staple"), -1); // no default, nothing marked
    // Without a PPD of its own the panel still finds the option's default.
    JpCoNuratPrintPdeQr7150kBC bare(std::make_shared<pdetest::TestCallback>());
    EXPECT_EQ(bare.indexOfMarkedOption(slot, "InputSlot"), 0);
}

TEST_F(PpdChoiceTest, PopUpAndSelectionFollowingTheControlUnlessTheHostVetoes)
{
    const PDEChoiceList stapleChoices = ArrayFromPPDOption(staple).value_or(PDEChoiceList());
    ASSERT_EQ(stapleChoices.size(), 2);
    // The pop-up holds one item a choice, under its title in the given encoding.
    QComboBox popUp;
    popUp.addItem(QStringLiteral("stale"));
    InitPopUpFromArray(&popUp, choices, pde::kStringEncodingUTF8);
    ASSERT_EQ(popUp.count(), 3);
    EXPECT_EQ(popUp.itemText(2), QStringLiteral("Fach 2 – groß"));
    EXPECT_EQ(popUp.itemData(2).value<PDEChoiceRef>(), choices.at(2));
    popUp.setCurrentIndex(1);
    QCheckBox box;
    box.setChecked(true);

    auto vetoing = std::make_shared<pdetest::ConstraintTestCallback>();
    vetoing->allow = false;
    const struct { std::shared_ptr<pdetest::TestCallback> host; int expected; } cases[] = {
        { std::make_shared<pdetest::TestCallback>(), 1 }, // not asked at all
        { vetoing, 0 },
        { std::make_shared<pdetest::ConstraintTestCallback>(), 1 },
    };
    for (const auto &c : cases) {
        JpCoNuratPrintPdeQr7150kBC panel(c.host);
        PDEChoiceRef fromPopUp = choices.at(0), fromBox = stapleChoices.at(0);
        panel.getSelection(&fromPopUp, &popUp, QStringLiteral("InputSlot"));
        panel.getSelection(&fromBox, stapleChoices, &box, QStringLiteral("Staple"));
        EXPECT_EQ(fromPopUp, choices.at(c.expected));
        EXPECT_EQ(fromBox, stapleChoices.at(c.expected));
    }
    EXPECT_EQ(vetoing->asked, (QStringList { "InputSlot=Tray1", "Staple=True" }));
    box.setChecked(false);
    PDEChoiceRef unchecked = stapleChoices.at(1);
    JpCoNuratPrintPdeQr7150kBC(cases[0].host).getSelection(&unchecked, stapleChoices, &box, QStringLiteral("Staple"));
    EXPECT_EQ(unchecked, stapleChoices.at(0));
}

} // namespace
