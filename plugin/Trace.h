#pragma once

// Trace logging of the panel: entry lines, exit lines and free-text lines.
// Silent unless the project is configured with -DPDE_TRACE=ON, when each line
// goes to stderr. Formats use %@ (an object), %p (a pointer), %s (a C string)
// and %i (an integer), one placeholder an argument.

#include <QString>
#include <QStringList>

#include <type_traits>
#include <typeinfo>

namespace pde::trace {

#ifdef PDE_TRACE
QString describe(const QString &value);
QString describe(const QStringList &value);
QString describe(const char *value);
QString describe(const void *value);
QString describe(long long value);
QString describe(bool value);
template<typename T>
QString describe(const T &value)
{
    if constexpr (std::is_integral_v<T> || std::is_enum_v<T>)
        return describe(static_cast<long long>(value));
    else if constexpr (requires { value.get(); })
        return describe(static_cast<const void *>(value.get()));
    else if constexpr (requires { value.data(); })
        return describe(static_cast<const void *>(value.data()));
    else
        return QStringLiteral("<%1>").arg(QString::fromLatin1(typeid(T).name()));
}
void write(const char *kind, const void *self, const char *format, const QStringList &arguments);
#endif

} // namespace pde::trace

template<typename... Args>
inline void _PDEProlog([[maybe_unused]] const void *self, [[maybe_unused]] const char *format,
                       [[maybe_unused]] const Args &...args)
{
#ifdef PDE_TRACE
    pde::trace::write("->", self, format, QStringList { pde::trace::describe(args)... });
#endif
}

template<typename... Args>
inline void _PDEEpilog([[maybe_unused]] const void *self, [[maybe_unused]] const char *format,
                       [[maybe_unused]] const Args &...args)
{
#ifdef PDE_TRACE
    pde::trace::write("<-", self, format, QStringList { pde::trace::describe(args)... });
#endif
}

template<typename... Args>
inline void _PDELog([[maybe_unused]] const void *self, [[maybe_unused]] const char *format,
                    [[maybe_unused]] const Args &...args)
{
#ifdef PDE_TRACE
    pde::trace::write("--", self, format, QStringList { pde::trace::describe(args)... });
#endif
}
