#pragma once

#include <QString>
#include <QStringList>
#include <QVariantMap>

class QWidget;

namespace pde {

// One pane of a print dialog, driven by the host in the order:
// panelName, restoreValuesAndReturnError, panelView, willShow,
// saveValuesAndReturnError, shouldPrint, summaryInfo; then destroyed.
// Error out-pointers exist for the protocol's shape; panels may leave them alone.
class Panel
{
public:
    virtual ~Panel() = default;

    // The panel's view; the host parents it into its dialog. May be null.
    virtual QWidget *panelView() = 0;
    virtual QString panelName() = 0;
    virtual QString panelKind() = 0;
    // PPD option keywords this panel handles itself; the host leaves them alone.
    virtual QStringList supportedPPDOptionKeys() = 0;
    virtual void willShow() = 0;
    virtual bool shouldHide() = 0;
    virtual bool shouldPrint() = 0;
    virtual bool shouldShowHelp() = 0;
    virtual void PPDOptionKeyValueDidChange(const QString &option, const QString &choice) = 0;
    virtual bool restoreValuesAndReturnError(QString *error) = 0;
    virtual bool saveValuesAndReturnError(QString *error) = 0;
    // Label to value, for a summary of the job's settings.
    virtual QVariantMap summaryInfo() = 0;
};

} // namespace pde
