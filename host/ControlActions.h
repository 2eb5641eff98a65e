#pragma once

#include <QList>
#include <QString>

#include <vector>

#include "host/CommandLine.h"

class QWidget;

namespace pdeprint {

// Applies clicks and typing to the controls of panel views, as a user would:
// a click toggles a button and fires its action, typed text goes key by key
// through the field's validator. With `requireUsable`, a hidden or disabled
// control is an error, as nobody could reach it on screen.
// Answers false with a one-line reason at the first step that cannot be done.
bool applyControlActions(const QList<QWidget *> &views, const std::vector<ControlAction> &actions,
                         bool requireUsable, QString *error);

} // namespace pdeprint
