// A plug-in lives in somebody else's process: a thousand jobs must not make
// it grow. (Under the asan preset LeakSanitizer also checks for leaks at exit.)

#include "platform/ButtonState.h"
#include "platform/Toolkit.h"
#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"
#include "tests/support/TestSupport.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <malloc.h>

namespace {

#ifdef __SANITIZE_ADDRESS__
// From the sanitizer runtime, which keeps the heap itself; g++ ships no header for it.
extern "C" size_t __sanitizer_get_current_allocated_bytes();
size_t heapInUse() { return __sanitizer_get_current_allocated_bytes(); }
#else
size_t heapInUse() { return mallinfo2().uordblks; }
#endif

TEST(Lifecycle, AThousandJobsDoNotGrowTheHeap)
{
    pdetest::PpdPtr ppd = pdetest::openPpd(pdetest::samplePpdPath());
    ASSERT_TRUE(ppd);
    pdetest::writeDomain(QVariantMap(), QStringLiteral("jp.co.nurat.mfp.lifecycle"));
    size_t atHundred = 0;
    for (int job = 1; job <= 1000; ++job) {
        {
            auto callback = std::make_shared<pdetest::ConstraintTestCallback>(ppd.get(), QStringLiteral("lifecycle"));
            JpCoNuratPrintPdeQr7150kBC panel(callback);
            // As a host does: the view is handed over and is the host's to delete.
            std::unique_ptr<QWidget> view(panel.panelView());
            ASSERT_TRUE(view);
            panel.restoreValuesAndReturnError(nullptr);
            pde::setButtonState(panel.mainCodeCB, 1);
            pde::setStringValue(panel.mainCodeText, QStringLiteral("code-%1").arg(job));
            panel.saveValuesAndReturnError(nullptr);
            panel.shouldPrint();
            panel.summaryInfo();
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
        if (job == 100)
            atHundred = heapInUse();
    }
    const size_t atThousand = heapInUse();
    // Caches fill during the first jobs; after that a job leaves nothing behind.
    EXPECT_LT(atThousand, atHundred + 64 * 1024) << "heap grew from " << atHundred << " to " << atThousand << " bytes over 900 jobs";
}

} // namespace
