#pragma once

// What every fuzz target shares: one offscreen application for the process,
// a private preferences folder, and the tests' host callback with constraint
// handling on the fuzzing printer's queue.

#include <QString>

#include <cups/ppd.h>

#include "tests/support/TestSupport.h"

namespace pdefuzz {

inline constexpr char kFuzzPrinter[] = "fuzz";

// Creates the application and the preferences folder on first use.
void ensureApplication();
QString preferencesFolder();
// The sample printer's PPD, opened once.
ppd_file_t *samplePpd();

class FuzzCallback : public pdetest::ConstraintTestCallback
{
public:
    explicit FuzzCallback(ppd_file_t *ppd)
        : ConstraintTestCallback(ppd, QString::fromLatin1(kFuzzPrinter))
    {
    }
};

} // namespace pdefuzz
