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
};

} // namespace pdeprint
