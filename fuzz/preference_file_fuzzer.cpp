// A preferences domain file with any contents, then the panel's check, load,
// restore and save over it. Input that begins with "{" is the JSON file,
// any other the first release's INI file.

#include "fuzz/FuzzSupport.h"
#include "platform/UserDefaults.h"
#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"

#include <QFile>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    using pde::UserDefaults;
    const QString domain = QString::fromLatin1(pdetest::kSampleDomain);
    QFile::remove(UserDefaults::fileNameForDomain(domain));
    QFile::remove(UserDefaults::legacyFileNameForDomain(domain));
    const QString path = size > 0 && data[0] == '{' ? UserDefaults::fileNameForDomain(domain) : UserDefaults::legacyFileNameForDomain(domain);
    if (!pdetest::writeFile(path, QByteArray(reinterpret_cast<const char *>(data), qsizetype(size))))
        return 0;

    JpCoNuratPrintPdeQr7150kBC panel(pdefuzz::makeCallback());
    panel.panelView();
    panel.restoreValuesAndReturnError(nullptr);
    panel.SaveUserPreference();
    panel.GetUserPreference();
    return 0;
}
