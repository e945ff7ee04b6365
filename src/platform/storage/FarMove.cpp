#include "platform/storage/FarMove.h"

#include "platform/storage/CarefulMove.h"
#include "platform/storage/FileDescriptor.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace vormel {

namespace {

/// The same for each attempt at a file, so that what a killed program left of one is replaced by the next.
QString halfWayName(const QString& to)
{
    const QFileInfo target(to);
    return QStringLiteral("%1/.vormel-copy-%2").arg(target.path()).arg(qHash(target.fileName(), 0), 0, 16);
}

int copyAll(int from, int to)
{
    constexpr size_t stretch = size_t{1} << 30U;
    while (true) {
        const ssize_t count = ::sendfile(to, from, nullptr, stretch);
        if (count == 0)
            return ::fsync(to) == 0 ? 0 : errno;
        if (count < 0 && errno != EINTR)
            return errno;
    }
}

int copyNew(const QByteArray& from, const QByteArray& to)
{
    const FileDescriptor source(::open(from.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    struct stat facts = {};
    if (!source.isOpen() || ::fstat(source.get(), &facts) != 0)
        return errno;
    if (!S_ISREG(facts.st_mode))
        return EINVAL;
    constexpr mode_t permissions = 0777;
    const FileDescriptor copy(
        ::open(to.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, facts.st_mode & permissions));
    return copy.isOpen() ? copyAll(source.get(), copy.get()) : errno;
}

} // namespace

int moveFar(const QString& from, const QString& to)
{
    const int near = moveWithoutReplacing(from, to);
    if (near != EXDEV)
        return near;
    const QString halfWay = halfWayName(to);
    QFile::remove(halfWay);
    int error = copyNew(QFile::encodeName(from), QFile::encodeName(halfWay));
    if (error == 0)
        error = moveWithoutReplacing(halfWay, to);
    QFile::remove(error == 0 ? from : halfWay);
    return error;
}

} // namespace vormel
