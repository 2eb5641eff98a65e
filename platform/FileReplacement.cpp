// Replacing a domain file whole. A writer holds an exclusive lock on its
// temporary file from creation to rename; the lock dies with the process, so
// a temporary that can be locked by someone else is a dead writer's leftover.

#include "platform/DomainFiles_p.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include <cstdio>
#include <memory>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace pde::domainfiles {

namespace {

bool sameFile(int descriptor, const QString &path)
{
    struct stat opened {};
    struct stat named {};
    return ::fstat(descriptor, &opened) == 0 && ::lstat(QFile::encodeName(path).constData(), &named) == 0
        && opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

// A temporary file beside the target, locked, still under its name: a
// cleaner may have removed it between its creation and the lock.
std::unique_ptr<QTemporaryFile> lockedTemporary(const QString &path)
{
    for (int attempt = 0; attempt < 3; ++attempt) {
        auto temporary = std::make_unique<QTemporaryFile>(path + QStringLiteral(".XXXXXX.tmp"));
        temporary->setAutoRemove(true);
        if (!temporary->open()) // created 0600
            return nullptr;
        if (::flock(temporary->handle(), LOCK_EX) != 0)
            return nullptr;
        if (sameFile(temporary->handle(), temporary->fileName()))
            return temporary;
    }
    return nullptr;
}

void removeLeftovers(const QString &path)
{
    const QFileInfo target(path);
    const QDir folder = target.dir();
    const QStringList pattern { target.fileName() + QStringLiteral(".??????.tmp") };
    for (const QString &name : folder.entryList(pattern, QDir::Files | QDir::Hidden | QDir::System)) {
        const QString leftover = folder.filePath(name);
        const int descriptor = ::open(QFile::encodeName(leftover).constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
        if (descriptor < 0)
            continue;
        if (::flock(descriptor, LOCK_EX | LOCK_NB) == 0 && sameFile(descriptor, leftover))
            QFile::remove(leftover);
        ::close(descriptor);
    }
}

} // namespace

bool replaceFile(const QString &path, const QByteArray &bytes)
{
    const QString folder = QFileInfo(path).absolutePath();
    if (!QDir().mkpath(folder))
        return false;
    QFile::setPermissions(folder, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);

    const std::unique_ptr<QTemporaryFile> temporary = lockedTemporary(path);
    if (!temporary || temporary->write(bytes) != bytes.size() || !temporary->flush())
        return false;
    // On disk before the rename, so that a crash of the system leaves the
    // old file or the whole new one.
    if (::fdatasync(temporary->handle()) != 0)
        return false;
    if (std::rename(QFile::encodeName(temporary->fileName()).constData(), QFile::encodeName(path).constData()) != 0)
        return false;
    temporary->setAutoRemove(false);
    temporary->close();
    removeLeftovers(path);
    return true;
}

} // namespace pde::domainfiles
