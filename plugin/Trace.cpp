#include "plugin/Trace.h"

#ifdef PDE_TRACE

#include <cstdio>
#include <typeinfo>

namespace pde::trace {

QString describe(const QString &value)
{
    return value.isNull() ? QStringLiteral("(null)") : value;
}

QString describe(const QStringList &value)
{
    return QLatin1Char('(') + value.join(QStringLiteral(", ")) + QLatin1Char(')');
}

QString describe(const char *value)
{
    return value ? QString::fromUtf8(value) : QStringLiteral("(null)");
}

QString describe(const void *value)
{
    return QStringLiteral("0x%1").arg(quintptr(value), 0, 16);
}

QString describe(long long value)
{
    return QString::number(value);
}

QString describe(bool value)
{
    return value ? QStringLiteral("YES") : QStringLiteral("NO");
}

void write(const char *kind, const void *self, const char *format, const QStringList &arguments)
{
    QString line;
    qsizetype next = 0;
    for (const char *p = format; *p; ++p) {
        if (p[0] == '%' && p[1] && QByteArrayView("@psi").contains(p[1])) {
            line += next < arguments.size() ? arguments.at(next++) : QString();
            ++p;
        } else {
            line += QLatin1Char(*p);
        }
    }
    std::fprintf(stderr, "[pde %p] %s %s\n", self, kind, line.toLocal8Bit().constData());
}

} // namespace pde::trace

#endif
