#include "platform/storage/WholeFile.h"

#include "platform/storage/CarefulMove.h"
#include "platform/storage/FileDescriptor.h"
#include "platform/storage/FolderSyncs.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

constexpr mode_t ownerOnly = 0600;

bool writeAll(int descriptor, const QByteArray& bytes)
{
    qsizetype written = 0;
    while (written < bytes.size()) {
        const ssize_t count =
            ::write(descriptor, bytes.constData() + written, static_cast<size_t>(bytes.size() - written));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        written += count;
    }
    return true;
}

struct FreshFile
{
    QByteArray path;
    FileDescriptor file;
};

/// An empty file beside the target that nobody else has open or can reach by another name.
FreshFile makeFreshFile(const QByteArray& target)
{
    constexpr int maxNames = 100;
    for (int number = 0; number < maxNames; ++number) {
        QByteArray path = target + ".new" + (number == 0 ? QByteArray() : QByteArray::number(number));
        // What a kill left goes, and so does a link or a pipe that was put there; a folder does not.
        ::unlink(path.constData());
        FileDescriptor file(::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, ownerOnly));
        if (file.isOpen() || errno != EEXIST)
            return {std::move(path), std::move(file)};
    }
    return {};
}

} // namespace

bool replaceWholeFile(const QString& path, const QByteArray& bytes)
{
    const QByteArray target = QFile::encodeName(path);
    const FreshFile fresh = makeFreshFile(target);
    if (!fresh.file.isOpen())
        return false;
    const int file = fresh.file.get();
    const bool isWritten = ::fchmod(file, ownerOnly) == 0 && writeAll(file, bytes) && ::fsync(file) == 0;
    if (!isWritten || ::rename(fresh.path.constData(), target.constData()) != 0) {
        ::unlink(fresh.path.constData());
        return false;
    }
    syncFolder(QFileInfo(path).path());
    return true;
}

std::optional<QByteArray> readWholeFile(const QString& path, qint64 limit)
{
    const FileDescriptor file(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat facts = {};
    if (!file.isOpen() || ::fstat(file.get(), &facts) != 0 || !S_ISREG(facts.st_mode) || facts.st_size > limit)
        return std::nullopt;
    QByteArray bytes(facts.st_size, Qt::Uninitialized);
    qsizetype have = 0;
    while (have < bytes.size()) {
        const ssize_t count = ::read(file.get(), bytes.data() + have, static_cast<size_t>(bytes.size() - have));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return std::nullopt;
        if (count == 0)
            break;
        have += count;
    }
    bytes.truncate(have);
    return bytes;
}

bool keepUnreadableFile(const QString& path)
{
    constexpr int maxKept = 1000;
    const QString kept = path + u".unreadable"_s;
    int error = moveWithoutReplacing(path, kept);
    for (int number = 2; error == EEXIST && number <= maxKept; ++number)
        error = moveWithoutReplacing(path, kept + u'.' + QString::number(number));
    return error == 0;
}

} // namespace vormel
