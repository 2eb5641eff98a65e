// The panel at a print dialog's usual tab size, rendered in English and
// Japanese and in a dark theme: every control shows whole, none covers
// another, and code text takes the theme's colours.

#include "tests/ui/PanelFixture.h"

#include "platform/ButtonState.h"
#include "platform/Toolkit.h"

#include <QDir>
#include <QPixmap>
#include <QTest>

namespace uitest {
namespace {

using PanelRenderTest = PanelFixture;

// Each control whole and inside the view; those in the box inside its frame and apart.
void expectCleanLayout(JpCoNuratPrintPdeQr7150kBC &panel)
{
    QWidget *view = panel.panelView();
    const QList<QWidget *> all { panel.billingCodeBox, panel.holdButton, panel.mainCodeCB, panel.mainCodeText,
                                 panel.subCodeCB, panel.subCodeText };
    const auto area = [](QWidget *control, QWidget *in) { return QRect(control->mapTo(in, QPoint()), control->size()); };
    for (qsizetype i = 0; i < all.size(); ++i) {
        SCOPED_TRACE(all[i]->objectName().toStdString());
        ASSERT_TRUE(all[i]->isVisible());
        EXPECT_TRUE(all[i]->width() >= all[i]->sizeHint().width() && all[i]->height() >= all[i]->sizeHint().height());
        EXPECT_TRUE(view->rect().contains(area(all[i], view)));
        EXPECT_TRUE(i == 0 || panel.billingCodeBox->contentsRect().contains(area(all[i], panel.billingCodeBox)));
        for (qsizetype j = std::max<qsizetype>(i + 1, 2); i > 0 && j < all.size(); ++j)
            EXPECT_FALSE(area(all[i], view).intersects(area(all[j], view))) << all[j]->objectName().toStdString();
    }
}

TEST_F(PanelRenderTest, PanelIsCleanInEachLanguageAndTheme)
{
    const QPalette light = QApplication::palette();
    // A dark theme as desktops ship it: light text on dark fields.
    QPalette dark(QColor(53, 53, 53), QColor(53, 53, 53));
    dark.setColor(QPalette::Disabled, QPalette::Text, QColor(127, 127, 127));
    const struct { QLocale locale; const char *file; QPalette palette; } looks[] = {
        { QLocale(QLocale::English, QLocale::UnitedStates), "panel-en.png", light },
        { QLocale(QLocale::Japanese, QLocale::Japan), "panel-ja.png", light },
        { QLocale(QLocale::English, QLocale::UnitedStates), "panel-dark.png", dark },
    };
    ASSERT_TRUE(QDir().mkpath(QStringLiteral(PDE_SCREENSHOT_DIR)));
    for (const auto &look : looks) {
        SCOPED_TRACE(look.file);
        QApplication::setPalette(look.palette);
        buildPanel(look.locale);
        window->resize(500, 300);
        showActive();
        // A usable main code and a greyed sub code, both with text.
        pde::setButtonState(panel->mainCodeCB, 1);
        pde::setStringValue(panel->subCodeText, QStringLiteral("2048"));
        panel->holdButtonProc(nullptr);
        pde::setStringValue(panel->mainCodeText, QStringLiteral("1024"));
        QCoreApplication::processEvents();

        expectCleanLayout(*panel);
        EXPECT_EQ(pde::textColor(panel->mainCodeText), look.palette.color(QPalette::Active, QPalette::Text));
        EXPECT_EQ(pde::textColor(panel->subCodeText), look.palette.color(QPalette::Disabled, QPalette::Text));
        EXPECT_EQ(panel->subCodeText->palette().color(QPalette::Inactive, QPalette::Text), pde::textColor(panel->subCodeText));
        const QString path = QDir(QStringLiteral(PDE_SCREENSHOT_DIR)).filePath(QString::fromLatin1(look.file));
        EXPECT_TRUE(window->grab().save(path));
    }
}

} // namespace
} // namespace uitest
