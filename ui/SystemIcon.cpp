#include "ui/SystemIcon.h"

#include "platform/Toolkit.h"

#include <QGuiApplication>
#include <QIcon>

QPixmap initWithSystemIconType(quint32 typeCode)
{
    const QIcon icon = pde::iconForTypeCode(typeCode);
    if (icon.isNull())
        return QPixmap();
    const qreal ratio = qGuiApp ? qGuiApp->devicePixelRatio() : 1.0;
    QPixmap pixmap = icon.pixmap(QSize(18, 18), ratio);
    // A theme without an 18-point size answers its nearest smaller one.
    const QSize wanted = QSize(18, 18) * ratio;
    if (pixmap.size() != wanted) {
        pixmap = pixmap.scaled(wanted, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        pixmap.setDevicePixelRatio(ratio);
    }
    return pixmap;
}
