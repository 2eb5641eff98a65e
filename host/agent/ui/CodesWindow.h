#pragma once

#include <QDialog>

#include <memory>

class QLabel;

namespace pdeprint {

class JobPanelSession;
class PanelArea;

// A queue's panels without a job, to change or unlock the kept codes: "Save"
// (the default button) stores the record as printing would, "Close" or
// Escape leaves it as it was.
class CodesWindow : public QDialog
{
    Q_OBJECT
public:
    explicit CodesWindow(std::unique_ptr<JobPanelSession> session);
    ~CodesWindow() override;

    bool saved() const { return m_saved; }

private:
    void save();

    std::unique_ptr<JobPanelSession> m_session;
    PanelArea *m_area = nullptr;
    QLabel *m_problem = nullptr;
    bool m_saved = false;
};

} // namespace pdeprint
