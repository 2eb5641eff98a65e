#pragma once

// What every fuzz target shares: one offscreen application with preferences
// of its own, the sample PPD, and the tests' host callback with constraint
// handling on the fuzzing printer's queue.

#include "tests/support/TestSupport.h"

namespace pdefuzz {

inline constexpr char kFuzzPrinter[] = "fuzz";

// Creates the application and its preferences folder on first use.
void ensureApplication();
// Opened once.
ppd_file_t *samplePpd();

inline std::shared_ptr<pdetest::ConstraintTestCallback> makeCallback(ppd_file_t *ppd)
{
    return std::make_shared<pdetest::ConstraintTestCallback>(ppd, QString::fromLatin1(kFuzzPrinter));
}

} // namespace pdefuzz
