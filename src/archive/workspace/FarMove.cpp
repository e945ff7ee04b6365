#include "archive/workspace/FarMove.h"

#include "archive/workspace/DestinationError.h"
#include "archive/workspace/OpenFolder.h"
#include "archive/workspace/WorkFolder.h"
#include "platform/storage/CarefulMove.h"
#include "platform/storage/FolderSyncs.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

int copyAll(int from, int to, const std::stop_token& stop)
{
    // Short enough for a stop to be felt.
    constexpr size_t stretch = size_t{8} << 20U;
    while (!stop.stop_requested()) {
        const ssize_t count = ::sendfile(to, from, nullptr, stretch);
        if (count == 0)
            return ::fsync(to) == 0 ? 0 : errno;
        if (count < 0 && errno != EINTR)
            return errno;
    }
    return ECANCELED;
}

int copyNew(int from, const struct stat& facts, const QString& to, const std::stop_token& stop)
{
    if (!S_ISREG(facts.st_mode))
        return EINVAL;
    constexpr mode_t permissions = 0777;
    const FileDescriptor copy(::open(QFile::encodeName(to).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC,
                                     facts.st_mode & permissions));
    return copy.isOpen() ? copyAll(from, copy.get(), stop) : errno;
}

int moveByCopy(const QString& from, const QString& to, const std::stop_token& stop)
{
    const QByteArray source = QFile::encodeName(from);
    const FileDescriptor file(::open(source.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    const auto facts = file.isOpen() ? factsOf(file.get()) : std::nullopt;
    if (!facts)
        return errno;
    // A kill in the middle leaves what the next start finds and removes.
    const WorkFolder work = WorkFolder::make(QFileInfo(to).path());
    const QString copy = work.path() + u"/copy"_s;
    int error = copyNew(file.get(), *facts, copy, stop);
    if (error == 0)
        error = moveWithoutReplacing(copy, to);
    if (error == 0)
        syncFolder(QFileInfo(to).path());
    // What stands there by now may be another file.
    if (error == 0 && identityAt(from) == identityOf(*facts))
        ::unlink(source.constData());
    return error;
}

} // namespace

int moveFar(const QString& from, const QString& to, const std::stop_token& stop)
{
    const int error = moveWithoutReplacing(from, to);
    if (error != EXDEV)
        return error;
    try {
        return moveByCopy(from, to, stop);
    } catch (const DestinationError&) {
        return EXDEV;
    }
}

} // namespace vormel
