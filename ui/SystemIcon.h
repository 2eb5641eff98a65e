#pragma once

#include <QPixmap>
#include <QtGlobal>

// The system's image for a four-character type code (pde::typeCode), 18 by 18
// points at the application's pixel ratio. Null for a code without an icon.
QPixmap initWithSystemIconType(quint32 typeCode);
