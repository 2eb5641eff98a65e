// PPD bytes parsed by libcups and handed to a new panel, then the PPD-choice
// toolkit over every option.

#include "fuzz/FuzzSupport.h"
#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"
#include "plugin/JpCoNuratPrintPdeQr7150kBCPDEChoice.h"
#include "plugin/HostUtilities.h"

#include <QComboBox>
#include <QTemporaryFile>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    pdefuzz::ensureApplication();
    QTemporaryFile file;
    if (!file.open())
        return 0;
    file.write(reinterpret_cast<const char *>(data), qint64(size));
    file.flush();
    ppd_file_t *ppd = ppdOpenFile(QFile::encodeName(file.fileName()).constData());
    if (!ppd)
        return 0;

    {
        auto callback = std::make_shared<pdefuzz::FuzzCallback>(ppd);
        JpCoNuratPrintPdeQr7150kBC panel(callback);
        panel.panelName();
        const pde::StringEncoding encoding = getEncodingFromPPD(ppd);
        QComboBox popUp;
        for (int g = 0; g < ppd->num_groups; ++g) {
            ppd_group_t &group = ppd->groups[g];
            for (int o = 0; o < group.num_options; ++o) {
                ppd_option_t *option = &group.options[o];
                const std::optional<PDEChoiceList> choices = ArrayFromPPDOption(option);
                if (!choices)
                    continue;
                InitPopUpFromArray(&popUp, *choices, encoding);
                panel.indexOfMarkedOption(option, option->keyword);
                PDEChoiceRef selection;
                panel.getSelection(&selection, &popUp, QString::fromLatin1(option->keyword));
                GetIndexForString(QString::fromLatin1(option->defchoice), *choices);
            }
        }
    }
    ppdClose(ppd);
    return 0;
}
