#pragma once

#include <QCoreApplication>
#include <QString>

#include <functional>
#include <memory>

#include "host/CommandLine.h"
#include "host/JobOptions.h"

class QPrintDialog;
class QPrinter;

namespace pdeprint {

class PanelSession;

// Answers the panels of the printer chosen in the dialog, the previous
// printer's panels already destroyed; null with a reason when it cannot.
using PrinterSwitch = std::function<PanelSession *(const QString &printerName, QString *error)>;

// Qt's print dialog with one option tab per panel, titled by the panel's name.
// Choosing another printer replaces the panels' tabs with that printer's.
class DialogDriver
{
    Q_DECLARE_TR_FUNCTIONS(DialogDriver)
public:
    DialogDriver(PanelSession &session, const QString &printerName, const Options &options,
                 PrinterSwitch switchPrinter);
    ~DialogDriver();
    DialogDriver(const DialogDriver &) = delete;
    DialogDriver &operator=(const DialogDriver &) = delete;

    // Opens the panels and builds the dialog with their tabs (not shown yet).
    void prepare();
    QPrintDialog *dialog() const { return m_dialog.get(); }
    // Brings the tab of the named panel to the front.
    bool selectPanelTab(const QString &panelName);

    // Runs the dialog. True when the user accepted it; `error` is set when
    // the run failed (a screenshot could not be saved, a control step failed).
    bool exec(QString *error);

    // What the user chose in the dialog.
    DialogSettings dialogSettings() const;
    QString chosenPrinter() const;
    bool printsToFile() const;

private:
    void addPanelTabs();
    void whenShown();
    void expandOptions();
    void printerChosen(const QString &printerName);

    PanelSession *m_session;
    QString m_printerName;
    Options m_options;
    PrinterSwitch m_switchPrinter;
    std::unique_ptr<QPrinter> m_printer;
    std::unique_ptr<QPrintDialog> m_dialog;
    QString m_runError;
    bool m_shown = false;
};

} // namespace pdeprint
