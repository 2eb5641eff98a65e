// The panel at a print dialog's usual tab size, rendered in English and
// Japanese: every control shows whole and none covers another.

#include "tests/ui/PanelFixture.h"

#include "platform/ButtonState.h"
#include "platform/Toolkit.h"

#include <QDir>
#include <QPixmap>
#include <QTest>

namespace uitest {
namespace {

using PanelRenderTest = PanelFixture;

void expectCleanLayout(JpCoNuratPrintPdeQr7150kBC &panel)
{
    QWidget *view = panel.panelView();
    const QList<QWidget *> inside { panel.holdButton, panel.mainCodeCB, panel.mainCodeText,
                                    panel.subCodeCB, panel.subCodeText };
    QList<QWidget *> all = inside;
    all.prepend(panel.billingCodeBox);

    for (QWidget *control : all) {
        SCOPED_TRACE(control->objectName().toStdString());
        ASSERT_TRUE(control->isVisible());
        const QSize hint = control->sizeHint();
        EXPECT_GE(control->width(), hint.width());
        EXPECT_GE(control->height(), hint.height());
        EXPECT_TRUE(view->rect().contains(QRect(control->mapTo(view, QPoint()), control->size())));
    }
    const QRect boxArea = panel.billingCodeBox->contentsRect();
    for (qsizetype i = 0; i < inside.size(); ++i) {
        const QRect a(inside[i]->mapTo(panel.billingCodeBox, QPoint()), inside[i]->size());
        EXPECT_TRUE(boxArea.contains(a)) << inside[i]->objectName().toStdString();
        for (qsizetype j = i + 1; j < inside.size(); ++j) {
            const QRect b(inside[j]->mapTo(panel.billingCodeBox, QPoint()), inside[j]->size());
            EXPECT_FALSE(a.intersects(b))
                << inside[i]->objectName().toStdString() << " and " << inside[j]->objectName().toStdString();
        }
    }
}

TEST_F(PanelRenderTest, PanelIsCleanInEachLanguage)
{
    const struct { QLocale locale; const char *file; } languages[] = {
        { QLocale(QLocale::English, QLocale::UnitedStates), "panel-en.png" },
        { QLocale(QLocale::Japanese, QLocale::Japan), "panel-ja.png" },
    };
    ASSERT_TRUE(QDir().mkpath(QStringLiteral(PDE_SCREENSHOT_DIR)));
    for (const auto &language : languages) {
        SCOPED_TRACE(language.file);
        buildPanel(language.locale);
        window->resize(500, 300);
        showActive();
        pde::setButtonState(panel->mainCodeCB, 1);
        panel->holdButtonProc(nullptr);
        pde::setStringValue(panel->mainCodeText, QStringLiteral("1024"));
        QCoreApplication::processEvents();

        expectCleanLayout(*panel);
        const QString path = QDir(QStringLiteral(PDE_SCREENSHOT_DIR)).filePath(QString::fromLatin1(language.file));
        EXPECT_TRUE(window->grab().save(path));
    }
}

} // namespace
} // namespace uitest
