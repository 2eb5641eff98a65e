#include "host/agent/ui/CodesWindow.h"

#include "host/agent/JobPanelSession.h"
#include "host/agent/ui/PanelArea.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace pdeprint {

CodesWindow::CodesWindow(std::unique_ptr<JobPanelSession> session) : m_session(std::move(session))
{
    setWindowTitle(tr("Billing Codes — %1").arg(m_session->job().queue));
    auto *layout = new QVBoxLayout(this);
    m_area = new PanelArea(m_session->views(), m_session->panelNames(), this);
    layout->addWidget(m_area);
    m_problem = new QLabel(this);
    m_problem->setWordWrap(true);
    m_problem->hide();
    layout->addWidget(m_problem);

    auto *buttons = new QDialogButtonBox(this);
    QPushButton *close = buttons->addButton(QDialogButtonBox::Close);
    close->setObjectName(QStringLiteral("closeButton"));
    QPushButton *save = buttons->addButton(QDialogButtonBox::Save);
    save->setObjectName(QStringLiteral("saveButton"));
    save->setDefault(true);
    layout->addWidget(buttons);
    connect(save, &QPushButton::clicked, this, &CodesWindow::save);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    if (QWidget *first = m_area->firstUsableControl())
        first->setFocus();
}

// The views go before the panels' session, as in the print dialog.
CodesWindow::~CodesWindow()
{
    delete m_area;
}

void CodesWindow::save()
{
    QMap<QString, QString> unused; // no job to take a ticket
    QString error;
    if (!m_session->finish(&unused, &error)) {
        m_problem->setText(tr("The codes were not saved: a panel refused them."));
        m_problem->show();
        return;
    }
    m_saved = true;
    accept();
}

} // namespace pdeprint
