// PPD bytes parsed by libcups and handed to a new panel, then the PPD-choice
// toolkit over every option.

#include "fuzz/FuzzSupport.h"
#include "plugin/HostUtilities.h"
#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"
#include "plugin/JpCoNuratPrintPdeQr7150kBCPDEChoice.h"

#include <QComboBox>
#include <QTemporaryFile>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    QTemporaryFile file;
    if (!file.open() || file.write(reinterpret_cast<const char *>(data), qint64(size)) < 0 || !file.flush())
        return 0;
    const pdetest::PpdPtr ppd = pdetest::openPpd(file.fileName());
    if (!ppd)
        return 0;
    JpCoNuratPrintPdeQr7150kBC panel(pdefuzz::makeCallback(ppd.get()));
    panel.panelName();
    QComboBox popUp;
    for (ppd_group_t *group = ppd->groups; group < ppd->groups + ppd->num_groups; ++group) {
        for (ppd_option_t *option = group->options; option < group->options + group->num_options; ++option) {
            const std::optional<PDEChoiceList> choices = ArrayFromPPDOption(option);
            if (!choices)
                continue;
            InitPopUpFromArray(&popUp, *choices, getEncodingFromPPD(ppd.get()));
            panel.indexOfMarkedOption(option, option->keyword);
            PDEChoiceRef selection;
            panel.getSelection(&selection, &popUp, QString::fromLatin1(option->keyword));
            GetIndexForString(QString::fromLatin1(option->defchoice), *choices);
        }
    }
    return 0;
}
