#pragma once

#include <QString>
#include <QVariant>
#include <QtGlobal>

namespace pde {

// A stretch of text in UTF-16 units.
struct TextRange
{
    qsizetype location = 0;
    qsizetype length = 0;
    friend bool operator==(const TextRange &, const TextRange &) = default;
};

// Converts between a field's text and its value and checks edits as they are
// made. Attach one to a QLineEdit with FormatterValidator.
class Formatter
{
public:
    virtual ~Formatter();

    virtual QString stringForObjectValue(const QVariant &value) const = 0;
    virtual bool getObjectValue(QVariant *value, const QString &string, QString *error) const = 0;
    // The edit turns `original` (selection `originalSelection`) into *partial
    // with selection *proposedSelection. True accepts it as proposed. False
    // refuses it: if the formatter changed *partial or *proposedSelection the
    // field shows that instead, otherwise the field keeps `original`.
    virtual bool isPartialStringValid(QString *partial, TextRange *proposedSelection,
                                      const QString &original, TextRange originalSelection,
                                      QString *error) const;
};

// A formatter for numbers with a format pattern ("##0"). Subclasses may
// replace any of its operations.
class NumberFormatter : public Formatter
{
public:
    void setFormat(const QString &format) { m_format = format; }
    QString format() const { return m_format; }

    QString stringForObjectValue(const QVariant &value) const override;
    bool getObjectValue(QVariant *value, const QString &string, QString *error) const override;

private:
    QString m_format;
};

} // namespace pde
