#pragma once

#include <QLocale>
#include <QTranslator>

namespace pdeprint {

// Everything pdeprint shows a person in their language: Qt's own texts (the
// print dialog, standard buttons) and pdeprint's. Installed in the
// application for as long as the object lives; a language without a
// catalogue stays English.
class HostTranslations
{
public:
    explicit HostTranslations(const QLocale &locale = QLocale());
    ~HostTranslations();
    HostTranslations(const HostTranslations &) = delete;
    HostTranslations &operator=(const HostTranslations &) = delete;

private:
    QTranslator m_qt;
    QTranslator m_host;
};

} // namespace pdeprint
