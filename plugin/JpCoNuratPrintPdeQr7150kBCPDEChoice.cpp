#include "plugin/JpCoNuratPrintPdeQr7150kBCPDEChoice.h"

#include "plugin/Trace.h"

#include <QComboBox>

std::shared_ptr<JpCoNuratPrintPdeQr7150kBCPDEChoice>
JpCoNuratPrintPdeQr7150kBCPDEChoice::choiceWithChoice(ppd_choice_t *choice)
{
    return std::make_shared<JpCoNuratPrintPdeQr7150kBCPDEChoice>(choice);
}

JpCoNuratPrintPdeQr7150kBCPDEChoice::JpCoNuratPrintPdeQr7150kBCPDEChoice(ppd_choice_t *choice)
    : m_choice(choice)
{
}

QString JpCoNuratPrintPdeQr7150kBCPDEChoice::userTitle(pde::StringEncoding encoding)
{
    if (m_userTitle.isNull() && m_choice) {
        auto title = pde::stringFromBytes(QByteArrayView(m_choice->text), encoding);
        if (title)
            m_userTitle = *title;
        else
            _PDELog(this, "could not create userTitle!");
    }
    return m_userTitle;
}

QString JpCoNuratPrintPdeQr7150kBCPDEChoice::ppdTitle()
{
    if (m_ppdTitle.isNull() && m_choice) {
        auto title = pde::stringFromBytes(QByteArrayView(m_choice->choice), pde::kStringEncodingASCII);
        if (title)
            m_ppdTitle = *title;
        else
            _PDELog(this, "could not create ppdTitle!");
    }
    return m_ppdTitle;
}

std::optional<PDEChoiceList> ArrayFromPPDOption(ppd_option_t *option)
{
    if (!option)
        return std::nullopt;
    PDEChoiceList list;
    const int count = option->num_choices;
    if (count > 0 && option->choices) {
        list.reserve(count);
        for (int i = 0; i < count; ++i)
            list.append(JpCoNuratPrintPdeQr7150kBCPDEChoice::choiceWithChoice(&option->choices[i]));
    }
    return list;
}

PDEChoiceRef FindChoiceForString(const QString &keyword, const PDEChoiceList &choices)
{
    if (keyword.isNull())
        return nullptr;
    for (const PDEChoiceRef &choice : choices) {
        if (choice && choice->ppdTitle() == keyword)
            return choice;
    }
    return nullptr;
}

qint64 GetIndexForString(const QString &keyword, const PDEChoiceList &choices)
{
    if (keyword.isNull())
        return 0;
    qint64 index = 0;
    for (const PDEChoiceRef &choice : choices) {
        if (choice && choice->ppdTitle() == keyword)
            return index;
        ++index;
    }
    return index;
}

void InitPopUpFromArray(QComboBox *popUp, const PDEChoiceList &choices, pde::StringEncoding encoding)
{
    if (!popUp)
        return;
    popUp->clear();
    for (const PDEChoiceRef &choice : choices)
        popUp->addItem(choice ? choice->userTitle(encoding) : QString(), QVariant::fromValue(choice));
}
