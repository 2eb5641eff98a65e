#include "host/HostTranslations.h"

#include <QCoreApplication>
#include <QLibraryInfo>

namespace pdeprint {

namespace {

// Texts of Qt's print dialog that Qt's own catalogues lack in some languages.
// Ours carry them under Qt's contexts and are asked first; lupdate finds them here.
[[maybe_unused]] const char *const kQtDialogTexts[] = {
    QT_TRANSLATE_NOOP("QPrintSettingsOutput", "Double Sided Printing"),
    QT_TRANSLATE_NOOP("QPrintSettingsOutput", "Off"),
    QT_TRANSLATE_NOOP("QPrintSettingsOutput", "Long side binding"),
    QT_TRANSLATE_NOOP("QPrintSettingsOutput", "Short side binding"),
    QT_TRANSLATE_NOOP("QPrintSettingsOutput", "Pages"),
    QT_TRANSLATE_NOOP("QPrintSettingsOutput",
                      "Specify pages or ranges separated by commas. Ranges are specified by two numbers separated "
                      "by a hyphen. E.g: 3,5-7,9 prints pages 3, 5, 6, 7 and 9."),
    QT_TRANSLATE_NOOP("QPrintPropertiesWidget", "Advanced"),
    QT_TRANSLATE_NOOP("QPrintPropertiesWidget", "There are conflicts in some options. Please fix them."),
};

} // namespace

HostTranslations::HostTranslations(const QLocale &locale)
{
    // Ours go in last, so that they are asked first.
    if (m_qt.load(locale, QStringLiteral("qtbase"), QStringLiteral("_"),
                  QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&m_qt);
    if (m_host.load(locale, QStringLiteral("pdeprint"), QStringLiteral("_"), QStringLiteral(":/pdeprint/translations")))
        QCoreApplication::installTranslator(&m_host);
}

HostTranslations::~HostTranslations()
{
    QCoreApplication::removeTranslator(&m_host);
    QCoreApplication::removeTranslator(&m_qt);
}

} // namespace pdeprint
