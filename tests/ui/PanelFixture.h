#pragma once

#include <QApplication>
#include <QLocale>
#include <QTest>
#include <QVBoxLayout>
#include <QWidget>

#include <gtest/gtest.h>

#include <memory>

#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"
#include "tests/support/TestSupport.h"

namespace uitest {

// A panel whose view sits in a window of its own, in the given language.
class PanelFixture : public ::testing::Test
{
protected:
    void SetUp() override { buildPanel(QLocale(QLocale::English, QLocale::UnitedStates)); }

    void buildPanel(const QLocale &locale)
    {
        window.reset();
        panel.reset();
        QLocale::setDefault(locale);
        panel = std::make_unique<JpCoNuratPrintPdeQr7150kBC>(std::make_shared<pdetest::TestCallback>());
        window = std::make_unique<QWidget>();
        auto *layout = new QVBoxLayout(window.get());
        layout->setContentsMargins(0, 0, 0, 0);
        ASSERT_NE(panel->panelView(), nullptr);
        layout->addWidget(panel->panelView());
    }

    // An active window, so that focus is real.
    void showActive()
    {
        window->show();
        QApplication::setActiveWindow(window.get());
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }

    // The window goes first: it holds the panel's view.
    std::unique_ptr<JpCoNuratPrintPdeQr7150kBC> panel;
    std::unique_ptr<QWidget> window;
};

} // namespace uitest
