#pragma once

#include <QPointer>
#include <QString>
#include <QValidator>

#include <memory>

#include "platform/Formatter.h"

class QLineEdit;

namespace pde {

// Hands every user edit of a QLineEdit to a Formatter, with the text and
// selection from before the edit, and applies its answer. Text set by the
// program is not checked, as with a formatter's edit check elsewhere.
class FormatterValidator : public QValidator
{
    Q_OBJECT
public:
    // Installs the formatter on the field, which owns it from then on; a
    // formatter installed earlier is replaced.
    static void setFormatter(QLineEdit *field, std::unique_ptr<Formatter> formatter);
    // The formatter installed on the field, or null.
    static Formatter *formatter(const QLineEdit *field);
    // Sets the field's text without asking the formatter.
    static void setTextUnchecked(QLineEdit *field, const QString &text);

    State validate(QString &input, int &pos) const override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    FormatterValidator(QLineEdit *field, std::unique_ptr<Formatter> formatter);
    TextRange currentSelection() const;
    void remember();

    QPointer<QLineEdit> m_field;
    std::unique_ptr<Formatter> m_formatter;
    // The field as it was before the edit in progress.
    QString m_text;
    TextRange m_selection;
    mutable bool m_settingText = false;
    // Inside an input-method event, whose caret is reported before its text
    // is checked.
    bool m_inInputMethod = false;
    // The replacement just handed to the field, which the field validates
    // once more before taking it.
    mutable QString m_replacement;
    mutable bool m_replacing = false;
};

} // namespace pde
