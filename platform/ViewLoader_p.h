#pragma once

#include <QList>

class QIODevice;
class QObject;
class QWidget;

namespace pde {

// Builds a widget tree from a Qt Designer description and binds it to an owner
// (see Bundle::loadNibNamed). Null when the description cannot be read.
QWidget *loadViewWithOwner(QIODevice *description, QObject *owner);
// Whether one of the owner's outlets holds the object.
bool ownerHolds(const QObject *owner, const QObject *object);

} // namespace pde
