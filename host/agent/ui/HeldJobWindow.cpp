#include "host/agent/ui/HeldJobWindow.h"

#include "host/CupsQueue.h"
#include "host/agent/JobPanelSession.h"
#include "host/agent/cups/JobRequests.h"
#include "host/agent/ui/PanelArea.h"

#include <QCloseEvent>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace pdeprint {

HeldJobWindow::HeldJobWindow(std::unique_ptr<JobPanelSession> session, CupsConnection &cups, const QString &sentFrom)
    : m_session(std::move(session)), m_cups(cups), m_jobId(m_session->job().id), m_queue(m_session->job().queue),
      m_sentFrom(sentFrom)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("Billing Code — %1 on %2").arg(m_session->job().name, m_queue));

    auto *layout = new QVBoxLayout(this);
    auto *about = new QLabel(
        tr("“%1” waits on %2 for its billing code.").arg(m_session->job().name.toHtmlEscaped(), m_queue.toHtmlEscaped()),
        this);
    layout->addWidget(about);
    if (!m_sentFrom.isEmpty()) {
        // Anyone who reaches the server can print under this user's name.
        auto *origin = new QLabel(tr("<b>Sent from %1</b>, not from this computer. Print it only if you sent it "
                                     "from there; otherwise cancel it.")
                                      .arg(m_sentFrom.toHtmlEscaped()),
                                  this);
        origin->setObjectName(QStringLiteral("origin"));
        origin->setWordWrap(true);
        layout->addWidget(origin);
    }
    m_area = new PanelArea(m_session->views(), m_session->panelNames(), this);
    layout->addWidget(m_area);
    m_problem = new QLabel(this);
    m_problem->setObjectName(QStringLiteral("problem"));
    m_problem->setWordWrap(true);
    m_problem->hide();
    layout->addWidget(m_problem);

    auto *buttons = new QDialogButtonBox(this);
    m_cancelJob = buttons->addButton(tr("Cancel Job"), QDialogButtonBox::DestructiveRole);
    m_cancelJob->setObjectName(QStringLiteral("cancelJobButton"));
    m_print = buttons->addButton(tr("Print"), QDialogButtonBox::AcceptRole);
    m_print->setObjectName(QStringLiteral("printButton"));
    m_print->setDefault(true);
    layout->addWidget(buttons);
    connect(m_print, &QPushButton::clicked, this, &HeldJobWindow::print);
    connect(m_cancelJob, &QPushButton::clicked, this, &HeldJobWindow::cancelJob);
    if (QWidget *first = m_area->firstUsableControl())
        first->setFocus();
}

// The views go before the panels' session, as in the print dialog.
HeldJobWindow::~HeldJobWindow()
{
    delete m_area;
}

void HeldJobWindow::withdraw(const QString &notice)
{
    closeWith(notice, true);
}

// Escape: as closing the window, the job stays held.
void HeldJobWindow::reject()
{
    close();
}

void HeldJobWindow::closeEvent(QCloseEvent *event)
{
    if (!m_closed) {
        m_closed = true;
        emit closed(m_jobId, m_notice, m_unasked);
    }
    event->accept();
}

void HeldJobWindow::closeWith(const QString &notice, bool unasked)
{
    m_notice = notice;
    m_unasked = unasked;
    close();
}

void HeldJobWindow::print()
{
    QMap<QString, QString> ticket;
    QString error;
    auto fail = [this](const QString &why) {
        m_problem->setText(tr("The job was not released: %1").arg(why));
        m_problem->show();
    };
    if (!m_session->finish(&ticket, &error))
        return fail(tr("a panel stopped it."));
    // Another window, a script or the user's own lprm may have got there first.
    const std::optional<HeldJob> now = fetchJob(m_cups.http(), m_jobId, &error);
    if (!now)
        return fail(error);
    if (!now->isHeld())
        return closeWith(tr("job %1 on %2 is no longer held; nothing sent").arg(m_jobId).arg(m_queue), true);
    if (!releaseJob(m_cups.http(), m_jobId, ticket, &error))
        return fail(error);
    closeWith(tr("released job %1 on %2").arg(m_jobId).arg(m_queue));
}

void HeldJobWindow::cancelJob()
{
    QString error;
    if (!pdeprint::cancelJob(m_cups.http(), m_jobId, &error)) {
        m_problem->setText(tr("The job was not cancelled: %1").arg(error));
        m_problem->show();
        return;
    }
    closeWith(tr("cancelled job %1 on %2").arg(m_jobId).arg(m_queue));
}

} // namespace pdeprint
