#pragma once

#include <QString>

#include <cups/ppd.h>

#include "platform/ConstraintHandling.h"
#include "platform/PluginCallback.h"
#include "platform/PrintSession.h"
#include "platform/PrintSettings.h"

namespace pdeprint {

// What pdeprint offers its panels: the session with the chosen queue, the
// job's print settings and the queue's PPD, whose constraints it resolves.
class HostCallback : public pde::PluginCallback, public pde::ConstraintHandling
{
public:
    // `ppd` is borrowed and may be null.
    HostCallback(pde::Printer printer, ppd_file_t *ppd);

    pde::PrintSession *printSession() override { return &m_session; }
    pde::PrintSettings *printSettings() override { return &m_settings; }
    ppd_file_t *ppdFile() override { return m_ppd; }

    // Marks the choice when it conflicts with no other marked choice; a
    // choice that would conflict is refused and the option keeps its mark.
    bool willChangePPDOptionKeyValue(const QString &option, const QString &choice) override;

private:
    pde::PrintSession m_session;
    pde::PrintSettings m_settings;
    ppd_file_t *m_ppd;
};

} // namespace pdeprint
