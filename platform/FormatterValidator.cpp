#include "platform/FormatterValidator.h"

#include <QEvent>
#include <QLineEdit>

namespace pde {

FormatterValidator::FormatterValidator(QLineEdit *field, std::unique_ptr<Formatter> formatter)
    : QValidator(field)
    , m_field(field)
    , m_formatter(std::move(formatter))
{
    remember();
    // The field tells a new text only once it has been checked, so it is the
    // text before the next edit.
    connect(field, &QLineEdit::textChanged, this, [this] {
        if (!m_inInputMethod)
            remember();
    });
    // An undo or redo moves the caret before its text is checked: a caret or
    // selection is only kept while the text is the one already checked.
    const auto rememberSelection = [this] {
        if (!m_inInputMethod && m_field && m_field->text() == m_text)
            remember();
    };
    connect(field, &QLineEdit::selectionChanged, this, rememberSelection);
    connect(field, &QLineEdit::cursorPositionChanged, this, rememberSelection);
    field->installEventFilter(this);
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

bool FormatterValidator::eventFilter(QObject *watched, QEvent *event)
{
    // The field is compared as the parent object: while it is being destroyed
    // it still sends events, but is no line edit any more.
    if (event->type() != QEvent::InputMethod || m_inInputMethod || watched != parent() || !m_field)
        return QValidator::eventFilter(watched, event);
    // A commit reports its caret before its text is checked, and may leave
    // the text as it was (a selection committed over with the same text), so
    // the state from before the event stands until the field has handled it.
    remember();
    m_inInputMethod = true;
    const QPointer<FormatterValidator> alive(this);
    static_cast<QObject *>(m_field.data())->event(event);
    if (!alive)
        return true;
    m_inInputMethod = false;
    remember();
    return true;
}

TextRange FormatterValidator::currentSelection() const
{
    if (m_field->hasSelectedText())
        return { m_field->selectionStart(), m_field->selectionLength() };
    return { m_field->cursorPosition(), 0 };
}

void FormatterValidator::remember()
{
    if (!m_field)
        return;
    m_replacing = false;
    m_text = m_field->text();
    m_selection = currentSelection();
}

QValidator::State FormatterValidator::validate(QString &input, int &pos) const
{
    if (m_settingText || !m_formatter || !m_field)
        return Acceptable;
    if (m_replacing && input == m_replacement)
        return Acceptable;
    // Asked about the text as it stands (focus leaving, Return), not about an
    // edit. An edit that keeps the text still moves the caret or selection.
    if (input == m_text && currentSelection() == m_selection)
        return Acceptable;

    QString partial = input;
    TextRange selection { pos, 0 };
    if (m_formatter->isPartialStringValid(&partial, &selection, m_text, m_selection, nullptr))
        return Acceptable;

    // Refused as it stands: the field goes back to its text and selection.
    // Handing it the old text, rather than answering Invalid, also holds for
    // an undo or redo, which the field would otherwise keep.
    if (partial == input && selection == TextRange { pos, 0 }) {
        partial = m_text;
        selection = m_selection;
    }

    // Show the answer, with its selection once the field has taken the text.
    input = partial;
    pos = int(selection.location + selection.length);
    m_replacement = partial;
    m_replacing = true;
    QPointer<QLineEdit> field = m_field;
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
