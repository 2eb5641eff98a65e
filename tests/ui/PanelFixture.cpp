#include "tests/ui/PanelFixture.h"

#include "platform/Toolkit.h"
#include "tests/support/TestSupport.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QTest>
#include <QVBoxLayout>

namespace uitest {

void PanelFixture::SetUp()
{
    buildPanel(QLocale(QLocale::English, QLocale::UnitedStates));
}

void PanelFixture::TearDown()
{
    window.reset();
    panel.reset();
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
}

void PanelFixture::buildPanel(const QLocale &locale)
{
    window.reset();
    panel.reset();
    QLocale::setDefault(locale);
    panel = std::make_unique<JpCoNuratPrintPdeQr7150kBC>(std::make_shared<pdetest::TestCallback>());
    window = std::make_unique<QWidget>();
    auto *layout = new QVBoxLayout(window.get());
    layout->setContentsMargins(0, 0, 0, 0);
    QWidget *view = panel->panelView();
    ASSERT_NE(view, nullptr);
    layout->addWidget(view);
}

void PanelFixture::showActive()
{
    window->show();
    QApplication::setActiveWindow(window.get());
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
}

void typeText(QWidget *widget, const QString &text)
{
    for (const QChar character : text) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(character));
        QApplication::sendEvent(widget, &press);
        QKeyEvent release(QEvent::KeyRelease, 0, Qt::NoModifier, QString(character));
        QApplication::sendEvent(widget, &release);
        QCoreApplication::processEvents();
    }
}

void pasteText(QWidget *widget, const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
    pressKey(widget, Qt::Key_V, Qt::ControlModifier);
}

void pressKey(QWidget *widget, int key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(widget, Qt::Key(key), modifiers);
    QCoreApplication::processEvents();
}

bool isUsable(const QLineEdit *field)
{
    return field && field->isEnabled() && !field->isReadOnly() && pde::isSelectable(field)
        && pde::textColor(field) == pde::blackColor();
}

bool isGreyed(const QLineEdit *field)
{
    return field && field->isEnabled() && field->isReadOnly() && !pde::isSelectable(field)
        && pde::textColor(field) == pde::grayColor();
}

} // namespace uitest
