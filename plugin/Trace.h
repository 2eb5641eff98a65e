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
// The whole object's address, whichever of its bases the pointer is typed as.
template<typename T>
const void *addressOf(const T *pointer)
{
    if constexpr (std::is_polymorphic_v<T>)
        return dynamic_cast<const void *>(pointer);
    else
        return pointer;
}

// Anything else: a pointer of any type (or a smart or guarded one) by its
// address, an optional by its value, a list by its elements, in parentheses.
template<typename T>
QString describe(const T &value)
{
    if constexpr (std::is_integral_v<T> || std::is_enum_v<T>)
        return describe(static_cast<long long>(value));
    else if constexpr (std::is_pointer_v<T>)
        return describe(addressOf(value));
    else if constexpr (requires { value.get(); })
        return describe(addressOf(value.get()));
    else if constexpr (requires { value.has_value(); *value; })
        return value.has_value() ? describe(*value) : QStringLiteral("(null)");
    else if constexpr (requires { value.begin(); value.end(); }) {
        QStringList elements;
        for (const auto &element : value)
            elements.append(describe(element));
        return describe(elements);
    } else if constexpr (requires { value.data(); })
        return describe(addressOf(value.data()));
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
