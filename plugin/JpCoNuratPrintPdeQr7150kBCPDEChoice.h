#pragma once

#include <QList>
#include <QMetaType>
#include <QString>

#include <cups/ppd.h>

#include <memory>
#include <optional>

#include "platform/StringEncoding.h"

class QComboBox;

// One choice of a PPD option, with its two titles made on first request.
// Must not outlive the PPD whose choice it points to.
class JpCoNuratPrintPdeQr7150kBCPDEChoice
{
public:
    static std::shared_ptr<JpCoNuratPrintPdeQr7150kBCPDEChoice> choiceWithChoice(ppd_choice_t *choice);
    explicit JpCoNuratPrintPdeQr7150kBCPDEChoice(ppd_choice_t *choice);

    // The choice's text in `encoding`, made on the first request that
    // succeeds and then kept whatever encoding later requests name. Null
    // while it cannot be made. libcups hands choice texts over in UTF-8,
    // whatever the file's LanguageEncoding.
    QString userTitle(pde::StringEncoding encoding);
    // The choice's keyword, in ASCII.
    QString ppdTitle();
    ppd_choice_t *choice() const { return m_choice; }

private:
    QString m_userTitle;
    QString m_ppdTitle;
    ppd_choice_t *m_choice = nullptr; // borrowed from the PPD
};

using PDEChoiceRef = std::shared_ptr<JpCoNuratPrintPdeQr7150kBCPDEChoice>;
using PDEChoiceList = QList<PDEChoiceRef>;
Q_DECLARE_METATYPE(PDEChoiceRef)

// The choices of an option, first to last; nothing for a null option.
std::optional<PDEChoiceList> ArrayFromPPDOption(ppd_option_t *option);
// The first choice whose keyword is `keyword`; null for none or a null keyword.
PDEChoiceRef FindChoiceForString(const QString &keyword, const PDEChoiceList &choices);
// The index of the first choice whose keyword is `keyword`; the list's size
// when none matches, and 0 for a null keyword.
qint64 GetIndexForString(const QString &keyword, const PDEChoiceList &choices);
// Fills the pop-up with one item a choice, titled in `encoding`, the choice as
// the item's data.
void InitPopUpFromArray(QComboBox *popUp, const PDEChoiceList &choices, pde::StringEncoding encoding);
