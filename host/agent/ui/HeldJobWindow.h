#pragma once

#include <QString>
#include <QDialog>

#include <memory>

class QLabel;
class QPushButton;

namespace pdeprint {

class CupsConnection;
class JobPanelSession;
class PanelArea;

// One held job's window: its queue's panels, "Print" (the default button)
// and "Cancel Job". Closing it, or Escape, leaves the job held. Deletes
// itself once closed. A dialog for its keys only: it is never modal.
class HeldJobWindow : public QDialog
{
    Q_OBJECT
public:
    // `sentFrom` names the host a job came from when that is not this machine.
    HeldJobWindow(std::unique_ptr<JobPanelSession> session, CupsConnection &cups, const QString &sentFrom = {});
    ~HeldJobWindow() override;

    int jobId() const { return m_jobId; }
    QString queue() const { return m_queue; }
    QString sentFrom() const { return m_sentFrom; }
    // The job stopped being held elsewhere: closes with the notice, sends nothing.
    void withdraw(const QString &notice);

signals:
    // Once, when the window closes, whatever became of the job. `notice` is a
    // line for the user, empty when there is nothing to tell; `unasked` when
    // the user did not close it, nor print or cancel the job.
    void closed(int jobId, const QString &notice, bool unasked);

public slots:
    void reject() override;

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void print();
    void cancelJob();
    void closeWith(const QString &notice, bool unasked = false);

    std::unique_ptr<JobPanelSession> m_session;
    CupsConnection &m_cups;
    int m_jobId;
    QString m_queue;
    QString m_sentFrom;
    PanelArea *m_area = nullptr;
    QLabel *m_problem = nullptr;
    QPushButton *m_print = nullptr;
    QPushButton *m_cancelJob = nullptr;
    QString m_notice;
    bool m_unasked = false;
    bool m_closed = false;
};

} // namespace pdeprint
