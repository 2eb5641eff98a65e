#include "host/ControlActions.h"

#include <QAbstractButton>
#include <QCoreApplication>
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
            *error = QStringLiteral("control \"%1\" is disabled").arg(action.control);
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
                *error = QStringLiteral("field \"%1\" is locked").arg(action.control);
                return false;
            }
            typeText(field, action.text);
        }
        QCoreApplication::processEvents();
    }
    return true;
}

} // namespace pdeprint
