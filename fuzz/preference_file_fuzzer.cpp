// A preferences domain file with any contents, then the panel's check, load,
// restore and save over it. Input that begins with "{" is the JSON file,
// any other the first release's INI file.

#include "fuzz/FuzzSupport.h"
#include "platform/UserDefaults.h"
#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"

#include <QDir>
#include <QFile>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    pdefuzz::ensureApplication();
    const QString domain = QStringLiteral("jp.co.nurat.mfp.") + QLatin1String(pdefuzz::kFuzzPrinter);
    QDir().mkpath(pdefuzz::preferencesFolder());
    const bool json = size > 0 && data[0] == '{';
    QFile::remove(pde::UserDefaults::fileNameForDomain(domain));
    QFile::remove(pde::UserDefaults::legacyFileNameForDomain(domain));
    {
        QFile file(json ? pde::UserDefaults::fileNameForDomain(domain) : pde::UserDefaults::legacyFileNameForDomain(domain));
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            return 0;
        file.write(reinterpret_cast<const char *>(data), qint64(size));
    }

    auto callback = std::make_shared<pdefuzz::FuzzCallback>(pdefuzz::samplePpd());
    JpCoNuratPrintPdeQr7150kBC panel(callback);
    panel.panelView();
    panel.restoreValuesAndReturnError(nullptr);
    panel.SaveUserPreference();
    panel.GetUserPreference();
    return 0;
}
