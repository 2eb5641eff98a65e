#pragma once

// What the agent's scale runs share: a process's CPU time, and their options.

#include <QDir>
#include <QFile>
#include <QString>
#include <QStringList>

#include <algorithm>

// CPU time of every thread of the process, in nanoseconds (scheduler's own
// accounting, finer than the 10 ms ticks of /proc/<pid>/stat).
inline qint64 cpuNanoseconds(qint64 pid)
{
    qint64 total = 0;
    const QDir tasks(QStringLiteral("/proc/%1/task").arg(pid));
    for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile stat(tasks.filePath(task + "/schedstat"));
        if (stat.open(QIODevice::ReadOnly))
            total += stat.readAll().split(' ').value(0).toLongLong();
    }
    return total;
}

// The whole number after `name` on the command line, at least 1; `fallback` without one.
inline int optionValue(const QStringList &arguments, const QString &name, int fallback)
{
    const qsizetype at = arguments.indexOf(name);
    return at > 0 && at + 1 < arguments.size() ? std::max(1, arguments[at + 1].toInt()) : fallback;
}
