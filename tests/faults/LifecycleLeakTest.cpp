// A plug-in lives in somebody else's process: a thousand jobs must not make
// it grow. (Under the asan preset LeakSanitizer also checks for leaks at exit.)

#include "platform/ButtonState.h"
#include "platform/Toolkit.h"
#include "platform/UserDefaults.h"
#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"
#include "tests/support/TestSupport.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <malloc.h>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define PDE_ASAN 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__)
#define PDE_ASAN 1
#endif
#ifdef PDE_ASAN
// From the sanitizer runtime; g++ ships no header for it.
extern "C" size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace {

size_t heapInUse()
{
#ifdef PDE_ASAN
    return __sanitizer_get_current_allocated_bytes();
#else
    return mallinfo2().uordblks;
#endif
}

void oneJob(ppd_file_t *ppd, int job)
{
    auto callback = std::make_shared<pdetest::ConstraintTestCallback>(ppd, QStringLiteral("lifecycle"));
    JpCoNuratPrintPdeQr7150kBC panel(callback);
    QWidget *view = panel.panelView();
    ASSERT_TRUE(view);
    panel.restoreValuesAndReturnError(nullptr);
    pde::setButtonState(panel.mainCodeCB, 1);
    pde::setStringValue(panel.mainCodeText, QStringLiteral("code-%1").arg(job));
    panel.saveValuesAndReturnError(nullptr);
    panel.shouldPrint();
    panel.summaryInfo();
    // As a host does: the view was handed over and is the host's to delete.
    delete view;
}

TEST(Lifecycle, AThousandJobsDoNotGrowTheHeap)
{
    pdetest::PpdPtr ppd = pdetest::openPpd(pdetest::samplePpdPath());
    ASSERT_TRUE(ppd);
    pde::UserDefaults::resetStandardUserDefaults();
    auto defaults = pde::UserDefaults::standardUserDefaults();
    defaults->setPersistentDomain({}, QStringLiteral("jp.co.nurat.mfp.lifecycle"));
    ASSERT_TRUE(defaults->synchronize());

    size_t atHundred = 0;
    for (int job = 1; job <= 1000; ++job) {
        oneJob(ppd.get(), job);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
        if (job == 100)
            atHundred = heapInUse();
    }
    const size_t atThousand = heapInUse();
    // Caches fill during the first jobs; after that a job leaves nothing behind.
    EXPECT_LT(atThousand, atHundred + 64 * 1024)
        << "heap grew from " << atHundred << " to " << atThousand << " bytes over 900 jobs";
}

} // namespace
