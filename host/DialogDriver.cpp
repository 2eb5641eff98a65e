#include "host/DialogDriver.h"

#include "host/ControlActions.h"
#include "host/PanelSession.h"

#include <QComboBox>
#include <QFileInfo>
#include <QPageRanges>
#include <QPixmap>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QTabWidget>
#include <QTimer>
#include <QWindow>

#include <functional>

namespace pdeprint {

DialogDriver::DialogDriver(PanelSession &session, const QString &printerName, const Options &options,
                           PrinterSwitch switchPrinter)
    : m_session(&session)
    , m_printerName(printerName)
    , m_options(options)
    , m_switchPrinter(std::move(switchPrinter))
    , m_printer(std::make_unique<QPrinter>(QPrinter::HighResolution))
{
    if (!printerName.isEmpty())
        m_printer->setPrinterName(printerName);
    m_printer->setCopyCount(options.copies);
    if (options.sides == QLatin1String("one-sided"))
        m_printer->setDuplex(QPrinter::DuplexNone);
    else if (options.sides == QLatin1String("two-sided-long-edge"))
        m_printer->setDuplex(QPrinter::DuplexLongSide);
    else if (options.sides == QLatin1String("two-sided-short-edge"))
        m_printer->setDuplex(QPrinter::DuplexShortSide);
    if (!options.pageRanges.isEmpty()) {
        m_printer->setPrintRange(QPrinter::PageRange);
        m_printer->setPageRanges(QPageRanges::fromString(options.pageRanges));
    }
}

// The dialog owns the views it took; the session cleans up the others.
DialogDriver::~DialogDriver() = default;

void DialogDriver::prepare()
{
    if (m_dialog)
        return;
    m_dialog = std::make_unique<QPrintDialog>(m_printer.get());
    m_dialog->setOption(QAbstractPrintDialog::PrintPageRange, true);
    // Only queues can take the job ticket.
    m_dialog->setOption(QAbstractPrintDialog::PrintToFile, false);
    if (!m_options.files.isEmpty())
        m_dialog->setWindowTitle(tr("Print %1").arg(QFileInfo(m_options.files.first()).fileName()));
    addPanelTabs();
    // Whoever opens pdeprint comes for the panels: show them at once.
    if (!m_session->panels().empty())
        selectPanelTab(m_session->panels().front().name);
    QObject::connect(m_dialog.get(), &QDialog::accepted, [this] { m_session->accept(); });
    if (auto *printers = m_dialog->findChild<QComboBox *>(QStringLiteral("printers"))) {
        QObject::connect(printers, &QComboBox::currentTextChanged, m_dialog.get(),
                         [this](const QString &name) { printerChosen(name); });
    }
}

void DialogDriver::addPanelTabs()
{
    m_session->open();
    m_session->loadViews();
    QList<QWidget *> tabs;
    for (auto &entry : m_session->panels()) {
        if (!entry.view)
            continue;
        entry.view->setWindowTitle(entry.name);
        tabs << entry.view;
    }
    m_dialog->setOptionTabs(tabs);
}

// The old panels and their views go; nothing typed for the old printer is
// carried over, the new panels restore what their own printer kept.
void DialogDriver::printerChosen(const QString &printerName)
{
    if (printerName.isEmpty() || printerName == m_printerName || !m_switchPrinter)
        return;
    std::vector<QPointer<QWidget>> oldViews;
    for (auto &entry : m_session->panels())
        oldViews.emplace_back(entry.view);
    QString error;
    PanelSession *next = m_switchPrinter(printerName, &error);
    if (!next) {
        m_runError = error;
        m_dialog->reject();
        return;
    }
    for (QPointer<QWidget> &view : oldViews)
        delete view.data();
    m_session = next;
    m_printerName = printerName;
    addPanelTabs();
    if (m_shown)
        m_session->showPanels();
    if (!m_session->panels().empty())
        selectPanelTab(m_session->panels().front().name);
}

bool DialogDriver::selectPanelTab(const QString &panelName)
{
    if (!m_dialog)
        return false;
    for (QTabWidget *tabWidget : m_dialog->findChildren<QTabWidget *>()) {
        for (int i = 0; i < tabWidget->count(); ++i) {
            if (tabWidget->tabText(i) == panelName) {
                tabWidget->setCurrentIndex(i);
                if (!tabWidget->isVisibleTo(m_dialog.get()))
                    expandOptions();
                return true;
            }
        }
    }
    return false;
}

// The dialog keeps its option tabs folded away behind an "Options >>" button.
void DialogDriver::expandOptions()
{
    for (QPushButton *button : m_dialog->findChildren<QPushButton *>()) {
        if (button->isVisibleTo(m_dialog.get()) && button->text().contains(QLatin1String(">>"))) {
            button->click();
            return;
        }
    }
}

void DialogDriver::whenShown()
{
    m_shown = true;
    m_session->showPanels();
    QList<QWidget *> views;
    for (auto &entry : m_session->panels()) {
        views << entry.view;
    }
    QString error;
    if (!applyControlActions(views, m_options.actions, true, &error)) {
        m_runError = error;
        m_dialog->reject();
        return;
    }
    if (!m_options.screenshot.isEmpty()) {
        if (!m_dialog->grab().save(m_options.screenshot, "PNG"))
            m_runError = QStringLiteral("cannot save the screenshot to %1").arg(m_options.screenshot);
        m_dialog->reject();
    }
}

bool DialogDriver::exec(QString *error)
{
    prepare();
    m_runError.clear();
    // Once the window is on screen and painted, as a user would see it.
    // The poll reaches itself through a weak pointer: a strong one would keep
    // it alive for ever when the dialog closes before the window is shown.
    auto waited = std::make_shared<int>(0);
    auto poll = std::make_shared<std::function<void()>>();
    *poll = [this, waited, weakPoll = std::weak_ptr<std::function<void()>>(poll)] {
        const auto self = weakPoll.lock();
        if (!self)
            return;
        QWindow *window = m_dialog->windowHandle();
        if ((!window || !window->isExposed()) && ++*waited < 100) {
            QTimer::singleShot(50, m_dialog.get(), *self);
            return;
        }
        QTimer::singleShot(100, m_dialog.get(), [this] { whenShown(); });
    };
    QTimer::singleShot(0, m_dialog.get(), *poll);
    const bool accepted = m_dialog->exec() == QDialog::Accepted;
    if (!m_runError.isEmpty()) {
        *error = m_runError;
        return false;
    }
    return accepted && m_options.screenshot.isEmpty();
}

DialogSettings DialogDriver::dialogSettings() const
{
    DialogSettings settings;
    settings.copies = m_printer->copyCount();
    if (m_printer->printRange() == QPrinter::PageRange && !m_printer->pageRanges().isEmpty())
        settings.pageRanges = m_printer->pageRanges().toString();
    switch (m_printer->duplex()) {
    case QPrinter::DuplexNone: settings.sides = QStringLiteral("one-sided"); break;
    case QPrinter::DuplexLongSide: settings.sides = QStringLiteral("two-sided-long-edge"); break;
    case QPrinter::DuplexShortSide: settings.sides = QStringLiteral("two-sided-short-edge"); break;
    case QPrinter::DuplexAuto: break;
    }
    return settings;
}

QString DialogDriver::chosenPrinter() const
{
    return m_printer->printerName();
}

bool DialogDriver::printsToFile() const
{
    return !m_printer->outputFileName().isEmpty();
}

} // namespace pdeprint
