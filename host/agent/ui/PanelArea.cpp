#include "host/agent/ui/PanelArea.h"

#include <QLineEdit>
#include <QTabWidget>
#include <QVBoxLayout>

namespace pdeprint {

PanelArea::PanelArea(const QList<QWidget *> &views, const QStringList &names, QWidget *parent) : QWidget(parent)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    QList<QWidget *> shown;
    QStringList shownNames;
    for (qsizetype i = 0; i < views.size(); ++i) {
        if (views[i]) { // a panel may have no view
            shown << views[i];
            shownNames << names.value(i);
        }
    }
    if (shown.size() == 1) {
        layout->addWidget(shown.front());
        shown.front()->show();
        return;
    }
    auto *tabs = new QTabWidget(this);
    for (qsizetype i = 0; i < shown.size(); ++i)
        tabs->addTab(shown[i], shownNames[i]);
    layout->addWidget(tabs);
}

QWidget *PanelArea::firstUsableControl() const
{
    QWidget *const top = window();
    QWidget *firstControl = nullptr;
    for (QWidget *widget = top->nextInFocusChain(); widget != top; widget = widget->nextInFocusChain()) {
        const bool usable = isAncestorOf(widget) && widget->isEnabled() && widget->isVisibleTo(top)
            && (widget->focusPolicy() & Qt::TabFocus);
        if (!usable)
            continue;
        if (qobject_cast<QLineEdit *>(widget))
            return widget;
        if (!firstControl)
            firstControl = widget;
    }
    return firstControl;
}

} // namespace pdeprint
