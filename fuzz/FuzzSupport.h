#pragma once

// What every fuzz target shares: one offscreen application for the process,
// a private preferences folder, and a host callback with constraint handling.

#include <QString>

#include <cups/ppd.h>

#include <memory>

#include "platform/ConstraintHandling.h"
#include "platform/PluginCallback.h"
#include "platform/PrintSession.h"
#include "platform/PrintSettings.h"

namespace pdefuzz {

// Creates the application and the preferences folder on first use.
void ensureApplication();
QString preferencesFolder();
// The sample printer's PPD, opened once.
ppd_file_t *samplePpd();

class FuzzCallback : public pde::PluginCallback, public pde::ConstraintHandling
{
public:
    explicit FuzzCallback(ppd_file_t *ppd);
    pde::PrintSession *printSession() override { return &session; }
    pde::PrintSettings *printSettings() override { return &settings; }
    ppd_file_t *ppdFile() override { return ppd; }
    bool willChangePPDOptionKeyValue(const QString &, const QString &) override { return true; }

    pde::PrintSession session;
    pde::PrintSettings settings;
    ppd_file_t *ppd;
};

inline constexpr char kFuzzPrinter[] = "fuzz";

} // namespace pdefuzz
