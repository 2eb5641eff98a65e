#include "platform/ViewLoader_p.h"

#include <QAbstractButton>
#include <QBuffer>
#include <QCoreApplication>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QUiLoader>
#include <QWidget>

#include <optional>

namespace pde {
namespace {

// Writes `object` into the owner's property of the same name when the
// property's type can hold it.
void connectOutlet(QObject *owner, QObject *object)
{
    const QString name = object->objectName();
    if (name.isEmpty())
        return;
    const QMetaObject *ownerMeta = owner->metaObject();
    const int index = ownerMeta->indexOfProperty(name.toUtf8().constData());
    if (index < 0)
        return;
    const QMetaProperty property = ownerMeta->property(index);
    const QMetaObject *wanted = property.metaType().metaObject();
    if (!property.isWritable() || !wanted || !object->metaObject()->inherits(wanted))
        return;
    // A QObject-derived pointer has the same representation whatever its static type.
    property.write(owner, QVariant(property.metaType(), &object));
}

// "holdButtonProc:" names the owner's slot holdButtonProc(QObject *sender).
void connectAction(QObject *owner, QAbstractButton *control)
{
    QString action = control->property("action").toString();
    if (action.isEmpty())
        return;
    if (action.endsWith(QLatin1Char(':')))
        action.chop(1);
    const QByteArray signature = QMetaObject::normalizedSignature((action + "(QObject*)").toUtf8().constData());
    const int index = owner->metaObject()->indexOfMethod(signature.constData());
    if (index < 0)
        return;
    const QMetaMethod slot = owner->metaObject()->method(index);
    // The owner is the context: no call reaches an owner that is gone.
    QObject::connect(control, &QAbstractButton::clicked, owner, [owner, control, slot]() {
        slot.invoke(owner, Qt::DirectConnection, Q_ARG(QObject *, control));
    });
}

} // namespace

bool ownerHolds(const QObject *owner, const QObject *object)
{
    if (!owner || !object)
        return false;
    const QMetaObject *meta = owner->metaObject();
    for (int i = 0; i < meta->propertyCount(); ++i) {
        const QMetaProperty property = meta->property(i);
        if (property.metaType().flags().testFlag(QMetaType::PointerToQObject)
            && property.read(owner).value<QObject *>() == object)
            return true;
    }
    return false;
}

QWidget *loadViewWithOwner(QIODevice *description, QObject *owner)
{
    // Qt Designer's widget plug-ins (one pulls in QtQuick) are wanted only
    // by a view that names a custom widget; standard widgets need none. The
    // loader loads them as it is made, from the library paths' designer/
    // folders, so those paths are hidden from it while it is made.
    const QByteArray text = description->readAll();
    QBuffer buffer;
    buffer.setData(text);
    buffer.open(QIODevice::ReadOnly);
    std::optional<QUiLoader> loader;
    if (text.contains("<customwidgets>")) {
        loader.emplace();
    } else {
        const QStringList libraryPaths = QCoreApplication::libraryPaths();
        QCoreApplication::setLibraryPaths({});
        loader.emplace();
        loader->clearPluginPaths();
        QCoreApplication::setLibraryPaths(libraryPaths);
    }
    QWidget *view = loader->load(&buffer, nullptr);
    if (!view)
        return nullptr;
    if (!owner)
        return view;

    QList<QObject *> objects { view };
    objects += view->findChildren<QObject *>();
    for (QObject *object : objects) {
        connectOutlet(owner, object);
        if (auto *button = qobject_cast<QAbstractButton *>(object))
            connectAction(owner, button);
    }
    return view;
}

} // namespace pde
