// The PPD-choice toolkit. The panel itself calls none of it (the PPD fuzz
// target runs it all); these tests keep its documented answers.

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
        ASSERT_TRUE(ppd && slot);
        ASSERT_EQ(choices.size(), 3);
    }

    pdetest::PpdPtr ppd = pdetest::openPpd(pdetest::testDataPath(QStringLiteral("nurat-utf8.ppd")));
    ppd_option_t *slot = ppd ? ppdFindOption(ppd.get(), "InputSlot") : nullptr;
    PDEChoiceList choices = ArrayFromPPDOption(slot).value_or(PDEChoiceList());
};

TEST_F(PpdChoiceTest, ArrayIsSearchedByKeywordAndKeepsTheFirstTitle)
{
    // A failed search answers one past the last index, a missing keyword the first.
    const struct { QString keyword; qint64 index; } cases[] = {
        { QStringLiteral("Tray1"), 1 }, { QStringLiteral("tray1"), 3 }, { QString(), 0 },
    };
    for (const auto &c : cases)
        EXPECT_EQ(GetIndexForString(c.keyword, choices), c.index) << c.keyword.toStdString();

    // A failure is not kept; the first success is, whatever encoding is asked next.
    EXPECT_TRUE(choices.at(2)->userTitle(pde::kStringEncodingASCII).isNull());
    EXPECT_EQ(choices.at(2)->userTitle(pde::kStringEncodingUTF8), QStringLiteral("Fach 2 – groß"));
    EXPECT_EQ(choices.at(2)->userTitle(pde::kStringEncodingMacRoman), QStringLiteral("Fach 2 – groß"));
}

TEST_F(PpdChoiceTest, MarkedThenDefault)
{
    JpCoNuratPrintPdeQr7150kBC panel(std::make_shared<pdetest::ConstraintTestCallback>(ppd.get()));
    EXPECT_EQ(panel.indexOfMarkedOption(slot, "InputSlot"), 0); // the default choice
    ppdMarkOption(ppd.get(), "InputSlot", "Tray2");
    EXPECT_EQ(panel.indexOfMarkedOption(slot, "InputSlot"), 2);
}

TEST_F(PpdChoiceTest, PopUpAndSelectionFollowingTheControlUnlessTheHostVetoes)
{
    QComboBox popUp;
    popUp.addItem(QStringLiteral("stale"));
    InitPopUpFromArray(&popUp, choices, pde::kStringEncodingUTF8);
    ASSERT_EQ(popUp.count(), 3);
    popUp.setCurrentIndex(1);

    auto vetoing = std::make_shared<pdetest::ConstraintTestCallback>();
    vetoing->allow = false;
    const struct { std::shared_ptr<pdetest::TestCallback> host; int expected; } cases[] = {
        { std::make_shared<pdetest::TestCallback>(), 1 }, // not asked at all
        { vetoing, 0 },
        { std::make_shared<pdetest::ConstraintTestCallback>(), 1 },
    };
    for (const auto &c : cases) {
        PDEChoiceRef selection = choices.at(0);
        JpCoNuratPrintPdeQr7150kBC(c.host).getSelection(&selection, &popUp, QStringLiteral("InputSlot"));
        EXPECT_EQ(selection, choices.at(c.expected));
    }
    EXPECT_EQ(vetoing->asked, QStringList { "InputSlot=Tray1" });
}

} // namespace
