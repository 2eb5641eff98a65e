#include "platform/FormatterValidator.h"

#include <QLineEdit>

namespace pde {

FormatterValidator::FormatterValidator(QLineEdit *field, std::unique_ptr<Formatter> formatter)
    : QValidator(field)
    , m_field(field)
    , m_formatter(std::move(formatter))
{
    remember();
    // Keep the text and selection from before the next edit.
    connect(field, &QLineEdit::textChanged, this, &FormatterValidator::remember);
    connect(field, &QLineEdit::selectionChanged, this, &FormatterValidator::remember);
    connect(field, &QLineEdit::cursorPositionChanged, this, &FormatterValidator::remember);
}

void FormatterValidator::setFormatter(QLineEdit *field, std::unique_ptr<Formatter> formatter)
{
    if (!field)
        return;
    if (auto *old = field->findChild<FormatterValidator *>(QString(), Qt::FindDirectChildrenOnly)) {
        field->setValidator(nullptr);
        delete old;
    }
    if (!formatter)
        return;
    field->setValidator(new FormatterValidator(field, std::move(formatter)));
}

Formatter *FormatterValidator::formatter(const QLineEdit *field)
{
    if (!field)
        return nullptr;
    auto *validator = qobject_cast<const FormatterValidator *>(field->validator());
    return validator ? validator->m_formatter.get() : nullptr;
}

void FormatterValidator::setTextUnchecked(QLineEdit *field, const QString &text)
{
    if (!field)
        return;
    auto *validator = qobject_cast<const FormatterValidator *>(field->validator());
    if (validator)
        validator->m_settingText = true;
    field->setText(text);
    if (validator)
        validator->m_settingText = false;
}

void FormatterValidator::remember()
{
    if (!m_field)
        return;
    m_replacing = false;
    m_text = m_field->text();
    if (m_field->hasSelectedText())
        m_selection = { m_field->selectionStart(), m_field->selectionLength() };
    else
        m_selection = { m_field->cursorPosition(), 0 };
}

QValidator::State FormatterValidator::validate(QString &input, int &pos) const
{
    if (m_settingText || !m_formatter || input == m_text)
        return Acceptable;
    if (m_replacing && input == m_replacement)
        return Acceptable;

    QString partial = input;
    TextRange selection { pos, 0 };
    if (m_formatter->isPartialStringValid(&partial, &selection, m_text, m_selection, nullptr))
        return Acceptable;

    QPointer<QLineEdit> field = m_field;
    if (partial == input && selection == TextRange { pos, 0 }) {
        // Refused as it stands: the field goes back to its text, and then to
        // its selection from before the edit.
        const TextRange before = m_selection;
        QMetaObject::invokeMethod(
            const_cast<FormatterValidator *>(this),
            [field, before] {
                if (field)
                    field->setSelection(int(before.location), int(before.length));
            },
            Qt::QueuedConnection);
        return Invalid;
    }

    // Refused with a replacement: show it, with the formatter's selection once
    // the field has taken the new text.
    input = partial;
    pos = int(selection.location + selection.length);
    m_replacement = partial;
    m_replacing = true;
    QMetaObject::invokeMethod(
        const_cast<FormatterValidator *>(this),
        [field, selection] {
            if (field)
                field->setSelection(int(selection.location), int(selection.length));
        },
        Qt::QueuedConnection);
    return Acceptable;
}

} // namespace pde
