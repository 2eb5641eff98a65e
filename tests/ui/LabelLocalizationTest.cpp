// Titles localised from their key, in English and Japanese.

#include "tests/ui/PanelFixture.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QToolButton>

namespace uitest {
namespace {

using LabelLocalizationTest = PanelFixture;

struct TitleCase
{
    QString title;
    QString english;
    QString japanese;
};

TEST_F(LabelLocalizationTest, KeyIsTheTextBeforeTheFirstColon)
{
    const TitleCase cases[] = {
        { "Main Code:", "Main Code:", "主コード:" },
        { "Billing Code", "Billing Code", "部門コード" },
        { " \n\tSub Code: and more: text", "Sub Code:", "副コード:" },
        { ":Main Code", ":Main Code", ":Main Code" },
        { "  :", "  :", "  :" },
        { "", "", "" },
        { " \n ", " \n ", " \n " },
        { "Unknown Key:", "Unknown Key:", "Unknown Key:" },
        { "Unknown", "Unknown", "Unknown" },
    };
    for (const QLocale &locale : { QLocale(QLocale::English, QLocale::UnitedStates), QLocale(QLocale::Japanese, QLocale::Japan) }) {
        QLocale::setDefault(locale);
        const bool japanese = locale.language() == QLocale::Japanese;
        for (const TitleCase &c : cases) {
            SCOPED_TRACE(c.title.toStdString() + " in " + locale.name().toStdString());
            EXPECT_EQ(panel->localizedStringValue(c.title), japanese ? c.japanese : c.english);
        }
    }
}

TEST_F(LabelLocalizationTest, ControlsGiveTheirTextOtherObjectsNothing)
{
    QLocale::setDefault(QLocale(QLocale::Japanese, QLocale::Japan));
    QLineEdit field(QStringLiteral("Sub Code:"));
    QGroupBox box(QStringLiteral("Billing Code"));
    QCheckBox checkBox(QStringLiteral("Main Code: x"));
    QToolButton button;
    button.setText(QStringLiteral("Main Code"));
    QObject plain;

    EXPECT_EQ(panel->localizedStringValue(QVariant::fromValue(&field)), QStringLiteral("副コード:"));
    EXPECT_EQ(panel->localizedStringValue(QVariant::fromValue(&box)), QStringLiteral("部門コード"));
    EXPECT_EQ(panel->localizedStringValue(QVariant::fromValue<QObject *>(&checkBox)), QStringLiteral("主コード:"));
    EXPECT_EQ(panel->localizedStringValue(QVariant::fromValue(&button)), QStringLiteral("主コード"));
    EXPECT_TRUE(panel->localizedStringValue(QVariant::fromValue(&plain)).isNull());
    EXPECT_TRUE(panel->localizedStringValue(QVariant(42)).isNull());
    EXPECT_TRUE(panel->localizedStringValue(QVariant(QByteArray("Main Code:"))).isNull());
    EXPECT_TRUE(panel->localizedStringValue(QVariant()).isNull());
}

TEST_F(LabelLocalizationTest, PanelTitlesFollowTheLanguage)
{
    EXPECT_EQ(panel->billingCodeBox->title(), QStringLiteral("Billing Code"));
    EXPECT_EQ(panel->mainCodeCB->text(), QStringLiteral("Main Code:"));

    buildPanel(QLocale(QLocale::Japanese, QLocale::Japan));
    EXPECT_EQ(panel->billingCodeBox->title(), QStringLiteral("部門コード"));
    EXPECT_EQ(panel->mainCodeCB->text(), QStringLiteral("主コード:"));
    EXPECT_EQ(panel->subCodeCB->text(), QStringLiteral("副コード:"));
    EXPECT_EQ(panel->panelName(), QStringLiteral("部門コード"));
}

} // namespace
} // namespace uitest
