#include "host/HostCallback.h"

namespace pdeprint {

HostCallback::HostCallback(pde::Printer printer, ppd_file_t *ppd)
    : m_session(std::move(printer))
    , m_ppd(ppd)
{
}

bool HostCallback::willChangePPDOptionKeyValue(const QString &option, const QString &choice)
{
    if (!m_ppd)
        return false;
    const QByteArray keyword = option.toUtf8();
    const QByteArray wanted = choice.toUtf8();
    ppd_option_t *ppdOption = ppdFindOption(m_ppd, keyword.constData());
    if (!ppdOption || !ppdFindChoice(ppdOption, wanted.constData()))
        return false;

    const ppd_choice_t *marked = ppdFindMarkedChoice(m_ppd, keyword.constData());
    const QByteArray previous = marked ? QByteArray(marked->choice) : QByteArray();
    const int conflictsBefore = ppdConflicts(m_ppd);
    ppdMarkOption(m_ppd, keyword.constData(), wanted.constData());
    // Conflicts that were there before are not this choice's fault.
    if (ppdConflicts(m_ppd) <= conflictsBefore)
        return true;
    if (!previous.isEmpty())
        ppdMarkOption(m_ppd, keyword.constData(), previous.constData());
    return false;
}

} // namespace pdeprint
