#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"
#include "plugin/JpCoNuratPrintPdeQr7150kBCPDEChoice.h"
#include "tests/support/TestSupport.h"

#include <QComboBox>

#include <gtest/gtest.h>

namespace {

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

    pdetest::PpdPtr ppd = pdetest::openPpd(pdetest::testDataPath(QStringLiteral("nurat-utf8.ppd")));
    ppd_option_t *slot = nullptr, *staple = nullptr;
    PDEChoiceList choices;
};

TEST_F(PpdChoiceTest, ArrayWrapsEveryChoiceInOrderIsSearchedByKeywordAndKeepsTheFirstTitle)
{
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(choices.at(i)->choice(), &slot->choices[i]);
    ppd_option_t empty {};
    EXPECT_EQ(ArrayFromPPDOption(&empty), std::optional<PDEChoiceList>(PDEChoiceList()));
    EXPECT_FALSE(ArrayFromPPDOption(nullptr));

    // A failed search answers one past the last index, a missing keyword the first.
    const struct { QString keyword; PDEChoiceList list; qint64 index; } cases[] = {
        { QStringLiteral("Tray1"), choices, 1 }, { QStringLiteral("tray1"), choices, 3 },
        { QStringLiteral(""), choices, 3 },      { QString(), choices, 0 },
        { QStringLiteral("Tray1"), {}, 0 },
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.keyword.toStdString());
        EXPECT_EQ(GetIndexForString(c.keyword, c.list), c.index);
        const bool found = !c.keyword.isNull() && c.index < c.list.size();
        EXPECT_EQ(FindChoiceForString(c.keyword, c.list), found ? c.list.at(c.index) : nullptr);
    }

    // A failure is not kept; the first success is, whatever encoding is asked next.
    EXPECT_TRUE(choices.at(2)->userTitle(pde::kStringEncodingASCII).isNull());
    EXPECT_EQ(choices.at(2)->userTitle(pde::kStringEncodingUTF8), QStringLiteral("Fach 2 – groß"));
    EXPECT_EQ(choices.at(2)->userTitle(pde::kStringEncodingMacRoman), QStringLiteral("Fach 2 – groß"));
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
