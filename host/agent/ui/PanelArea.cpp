#include "host/agent/ui/PanelArea.h"

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

} // namespace pdeprint
