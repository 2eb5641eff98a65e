#pragma once

// What every fuzz target shares: one offscreen application with preferences
// of its own, the sample PPD, the tests' host callback with constraint
// handling on the fuzzing printer's queue, and any text.

#include "tests/support/TestSupport.h"

#include <QApplication>
#include <QTemporaryDir>

#include <fuzzer/FuzzedDataProvider.h>

namespace pdefuzz {

inline constexpr char kFuzzPrinter[] = "fuzz";

// Each fuzzing process its own preferences, so that a file one target leaves
// behind never becomes another target's input.
inline void ensureApplication()
{
    static QTemporaryDir config;
    static int argc = 1;
    static char name[] = "pdefuzz";
    static char *argv[] = { name, nullptr };
    if (QCoreApplication::instance())
        return;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(config.path()));
    new QApplication(argc, argv); // lives until the fuzzer exits
}

inline ppd_file_t *samplePpd()
{
    static ppd_file_t *ppd = pdetest::openPpd(pdetest::samplePpdPath()).release();
    return ppd;
}

inline std::shared_ptr<pdetest::ConstraintTestCallback> makeCallback(ppd_file_t *ppd)
{
    return std::make_shared<pdetest::ConstraintTestCallback>(ppd, QString::fromLatin1(kFuzzPrinter));
}

// Any bytes, read as UTF-8 or as Latin-1.
inline QString anyText(FuzzedDataProvider &in, size_t maxBytes)
{
    const std::string bytes = in.ConsumeRandomLengthString(maxBytes);
    const auto size = qsizetype(bytes.size());
    return in.ConsumeBool() ? QString::fromUtf8(bytes.data(), size) : QString::fromLatin1(bytes.data(), size);
}

} // namespace pdefuzz
