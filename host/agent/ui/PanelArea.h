#pragma once

#include <QList>
#include <QStringList>
#include <QWidget>

namespace pdeprint {

// The panels' views as a window shows them: one tab a panel, or the only
// panel directly. Takes the views as its children.
class PanelArea : public QWidget
{
public:
    PanelArea(const QList<QWidget *> &views, const QStringList &names, QWidget *parent = nullptr);

    // Where the keyboard starts, in the panels' tab order: the first text
    // field Tab reaches, else the first control it reaches.
    // Null when none can be used.
    QWidget *firstUsableControl() const;
};

} // namespace pdeprint
