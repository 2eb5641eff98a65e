// The panel's PPD-choice utilities: the marked choice of an option, and the
// user's selection in a pop-up or a check box, vetted by the host.

#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"

#include "platform/ButtonState.h"
#include "platform/ConstraintHandling.h"
#include "platform/PluginCallback.h"
#include "plugin/JpCoNuratPrintPdeQr7150kBCPDEChoice.h"
#include "plugin/Trace.h"

#include <QComboBox>

namespace {

// The choice's position in the option's array; -1 when it is not there.
qint64 positionInOption(const ppd_option_t *option, const ppd_choice_t *choice)
{
    if (!option || !choice || !option->choices || choice < option->choices
        || choice >= option->choices + option->num_choices)
        return -1;
    return qint64(choice - option->choices);
}

} // namespace

qint64 JpCoNuratPrintPdeQr7150kBC::indexOfMarkedOption(ppd_option_t *option, const char *keyword) const
{
    if (ppd && keyword) {
        if (ppd_choice_t *marked = ppdFindMarkedChoice(ppd, keyword))
            return positionInOption(option, marked);
    }
    if (option) {
        if (ppd_choice_t *fallback = ppdFindChoice(option, option->defchoice))
            return positionInOption(option, fallback);
    }
    _PDELog(this, "returning a -1 index means there was no default choice");
    return -1;
}

namespace {

// Stores the candidate in the selection unless the host vetoes it.
void applySelection(JpCoNuratPrintPdeQr7150kBC *panel, PDEChoiceRef *selection, const PDEChoiceRef &candidate,
                    const QString &keyword)
{
    if (panel->useConstraintHandling) {
        auto *constraints = dynamic_cast<pde::ConstraintHandling *>(panel->pdePluginCallbackObject.get());
        const QString choice = candidate ? candidate->ppdTitle() : QString();
        if (constraints && constraints->willChangePPDOptionKeyValue(keyword, choice))
            *selection = candidate;
    } else {
        *selection = candidate;
    }
}

} // namespace

void JpCoNuratPrintPdeQr7150kBC::getSelection(PDEChoiceRef *selection, QComboBox *popUp, const QString &keyword)
{
    if (!selection)
        return;
    _PDEProlog(this, "getSelection:(%@) fromPopUp:(%@) forKey:(%@)", *selection, popUp, keyword);
    const int index = popUp ? popUp->currentIndex() : -1;
    _PDELog(this, "selected index: %i", index);
    const PDEChoiceRef candidate = popUp ? popUp->itemData(index).value<PDEChoiceRef>() : nullptr;
    _PDELog(this, "selected request: %@", candidate);
    applySelection(this, selection, candidate, keyword);
    _PDEEpilog(this, "getSelection:fromPopUp:forKey:=PDEChoice(%@)", *selection);
}

void JpCoNuratPrintPdeQr7150kBC::getSelection(PDEChoiceRef *selection, const PDEChoiceList &choices,
                                              QCheckBox *button, const QString &keyword)
{
    if (!selection)
        return;
    _PDEProlog(this, "getSelection:(%@) fromButton:(%@) forKey:(%@)", *selection, button, keyword);
    const int index = pde::buttonState(button);
    _PDELog(this, "selected index: %i", index);
    const PDEChoiceRef candidate = index >= 0 && index < choices.size() ? choices.at(index) : nullptr;
    _PDELog(this, "selected request: %@", candidate);
    applySelection(this, selection, candidate, keyword);
    // The same exit text as the pop-up's, on purpose.
    _PDEEpilog(this, "getSelection:fromPopUp:forKey:=PDEChoice(%@)", *selection);
}
