#pragma once

#include <QLocale>
#include <QString>
#include <QWidget>

#include <gtest/gtest.h>

#include <memory>
#include <ostream>

#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"

// Readable failure messages.
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

namespace uitest {

// A panel whose view sits in a window of its own, in the given language.
class PanelFixture : public ::testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;

    void buildPanel(const QLocale &locale);
    // Shows the window and makes it the active one, so that focus is real.
    void showActive();

    std::unique_ptr<JpCoNuratPrintPdeQr7150kBC> panel;
    std::unique_ptr<QWidget> window;
};

// Typed as a user would, one key a character, letting queued work run.
void typeText(QWidget *widget, const QString &text);
void pasteText(QWidget *widget, const QString &text);
void pressKey(QWidget *widget, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

// A code field the user can edit: not read-only, selectable, black text.
bool isUsable(const QLineEdit *field);
// A greyed code field: read-only, not selectable, grey text, still enabled.
bool isGreyed(const QLineEdit *field);

} // namespace uitest
