#include "host/ControlActions.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QCoreApplication>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QWidget>

namespace pdeprint {

namespace {

QWidget *findControl(const QList<QWidget *> &views, const QString &name)
{
    for (QWidget *view : views) {
        if (!view)
            continue;
        if (view->objectName() == name)
            return view;
        if (auto *child = view->findChild<QWidget *>(name))
            return child;
    }
    return nullptr;
}

// One key press and release per character, so that the field's validator
// sees each keystroke as it would from a keyboard.
void typeText(QLineEdit *field, const QString &text)
{
    field->setFocus(Qt::OtherFocusReason);
    field->setCursorPosition(int(field->text().size()));
    for (const QChar character : text) {
        const int key = character.unicode() < 0x80 ? character.toUpper().unicode() : int(Qt::Key_unknown);
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, QString(character));
        QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, QString(character));
        QCoreApplication::sendEvent(field, &press);
        QCoreApplication::sendEvent(field, &release);
    }
}

// The checkable buttons that share a row of the grid with the control: its
// own check box, or a keep toggle beside it.
QList<QAbstractButton *> rowMates(QWidget *control)
{
    QList<QAbstractButton *> mates;
    QWidget *parent = control->parentWidget();
    auto *grid = parent ? qobject_cast<QGridLayout *>(parent->layout()) : nullptr;
    const int index = grid ? grid->indexOf(control) : -1;
    if (index < 0)
        return mates;
    int row = 0, column = 0, rows = 0, columns = 0;
    grid->getItemPosition(index, &row, &column, &rows, &columns);
    for (int i = 0; i < grid->count(); ++i) {
        int otherRow = 0, otherRows = 0;
        grid->getItemPosition(i, &otherRow, &column, &otherRows, &columns);
        auto *button = qobject_cast<QAbstractButton *>(grid->itemAt(i)->widget());
        if (button && button != control && button->isCheckable() && otherRow < row + rows && row < otherRow + otherRows)
            mates << button;
    }
    return mates;
}

// Why the user cannot change the control, and which click would let them.
QString whyUnusable(QWidget *control, const QString &what, const QString &otherwise)
{
    const QList<QAbstractButton *> mates = rowMates(control);
    for (QAbstractButton *toggle : mates) {
        if (!qobject_cast<QCheckBox *>(toggle) && toggle->isChecked())
            return QStringLiteral("%1 is kept; click \"%2\" to unlock it first").arg(what, toggle->objectName());
    }
    for (QAbstractButton *checkBox : mates) {
        if (qobject_cast<QCheckBox *>(checkBox) && !checkBox->isChecked())
            return QStringLiteral("%1 is greyed while \"%2\" is off; click \"%2\" first").arg(what, checkBox->objectName());
    }
    return QStringLiteral("%1 is %2").arg(what, otherwise);
}

} // namespace

bool applyControlActions(const QList<QWidget *> &views, const std::vector<ControlAction> &actions,
                         bool requireUsable, QString *error)
{
    for (const ControlAction &action : actions) {
        QWidget *control = findControl(views, action.control);
        if (!control) {
            *error = QStringLiteral("no control named \"%1\" in any panel").arg(action.control);
            return false;
        }
        if (requireUsable && !control->isVisible()) {
            *error = QStringLiteral("control \"%1\" is not visible").arg(action.control);
            return false;
        }
        if (!control->isEnabled()) {
            *error = whyUnusable(control, QStringLiteral("control \"%1\"").arg(action.control), QStringLiteral("disabled"));
            return false;
        }
        if (action.kind == ControlAction::Kind::Click) {
            auto *button = qobject_cast<QAbstractButton *>(control);
            if (!button) {
                *error = QStringLiteral("control \"%1\" is not a button and cannot be clicked").arg(action.control);
                return false;
            }
            button->click();
        } else {
            auto *field = qobject_cast<QLineEdit *>(control);
            if (!field) {
                *error = QStringLiteral("control \"%1\" is not a text field").arg(action.control);
                return false;
            }
            if (field->isReadOnly()) {
                *error = whyUnusable(field, QStringLiteral("field \"%1\"").arg(action.control), QStringLiteral("locked"));
                return false;
            }
            typeText(field, action.text);
        }
        QCoreApplication::processEvents();
    }
    return true;
}

} // namespace pdeprint
