#include "platform/storage/WholeFile.h"

#include "platform/storage/FileDescriptor.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

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

bool writeFreshFile(const QByteArray& path, const QByteArray& bytes)
{
    const FileDescriptor file(
        ::open(path.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, ownerOnly));
    return file.isOpen() && ::fchmod(file.get(), ownerOnly) == 0 && writeAll(file.get(), bytes) &&
           ::fsync(file.get()) == 0;
}

void syncFolderOf(const QString& path)
{
    const QByteArray folder = QFile::encodeName(QFileInfo(path).path());
    const FileDescriptor directory(::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory.isOpen())
        ::fsync(directory.get());
}

} // namespace

bool replaceWholeFile(const QString& path, const QByteArray& bytes)
{
    const QByteArray target = QFile::encodeName(path);
    const QByteArray fresh = target + ".new";
    if (!writeFreshFile(fresh, bytes) || ::rename(fresh.constData(), target.constData()) != 0) {
        ::unlink(fresh.constData());
        return false;
    }
    syncFolderOf(path);
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
    const QByteArray from = QFile::encodeName(path);
    return ::rename(from.constData(), (from + ".unreadable").constData()) == 0;
}

} // namespace vormel
