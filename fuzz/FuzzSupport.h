#pragma once

// What every fuzz target but the decoders' shares: one offscreen application
// with preferences of its own, the tests' host callback with constraint
// handling on the sample printer's queue, and any text.

#include "tests/support/TestSupport.h"

#include <QApplication>
#include <QTemporaryDir>

#include <fuzzer/FuzzedDataProvider.h>

// libFuzzer's set-up hook: each target is one file, so the header may define
// it. Each fuzzing process gets preferences of its own, so that a file one
// target leaves behind never becomes another target's input.
extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static QTemporaryDir config;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(config.path()));
    new QApplication(*argc, *argv); // lives until the fuzzer exits
    return 0;
}

namespace pdefuzz {

// On the sample PPD unless another is given.
inline std::shared_ptr<pdetest::ConstraintTestCallback> makeCallback(ppd_file_t *ppd = nullptr)
{
    static ppd_file_t *const sample = pdetest::openPpd(pdetest::samplePpdPath()).release();
    return std::make_shared<pdetest::ConstraintTestCallback>(ppd ? ppd : sample);
}

// Any bytes, read as UTF-8 or as Latin-1.
inline QString anyText(FuzzedDataProvider &in, size_t maxBytes)
{
    const std::string bytes = in.ConsumeRandomLengthString(maxBytes);
    const auto size = qsizetype(bytes.size());
    return in.ConsumeBool() ? QString::fromUtf8(bytes.data(), size) : QString::fromLatin1(bytes.data(), size);
}

} // namespace pdefuzz
