#include "archive/workspace/OpenFolder.h"

#include <QFile>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <memory>

namespace vormel {

namespace {

struct StreamCloser
{
    void operator()(DIR* stream) const { ::closedir(stream); }
};
using Stream = std::unique_ptr<DIR, StreamCloser>;

Stream streamOf(int folder)
{
    FileDescriptor listed(::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    Stream stream(listed.isOpen() ? ::fdopendir(listed.get()) : nullptr);
    if (stream)
        listed.release();
    return stream;
}

bool isInEveryFolder(const QByteArray& name)
{
    return name == "." || name == "..";
}

/// Some file systems do not say it with the name.
mode_t typeOf(int folder, const dirent& entry)
{
    if (entry.d_type != DT_UNKNOWN)
        return static_cast<mode_t>(DTTOIF(entry.d_type));
    const auto facts = factsOf(folder, entry.d_name);
    return facts ? facts->st_mode & S_IFMT : 0;
}

} // namespace

FileIdentity identityOf(const struct stat& facts)
{
    return {facts.st_dev, facts.st_ino};
}

FileIdentity identityAt(const QString& path)
{
    struct stat facts = {};
    return ::lstat(QFile::encodeName(path).constData(), &facts) == 0 ? identityOf(facts) : FileIdentity();
}

FileDescriptor openFolder(int parent, const QByteArray& name)
{
    return FileDescriptor(::openat(parent, name.constData(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

std::optional<std::vector<FolderEntry>> entriesOf(int folder)
{
    const Stream stream = streamOf(folder);
    if (!stream)
        return std::nullopt;
    std::vector<FolderEntry> entries;
    errno = 0;
    while (const dirent* entry = ::readdir(stream.get())) {
        QByteArray name(entry->d_name);
        if (!isInEveryFolder(name))
            entries.push_back({std::move(name), typeOf(folder, *entry)});
        errno = 0;
    }
    if (errno != 0)
        return std::nullopt;
    std::sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
    return entries;
}

std::optional<struct stat> factsOf(int folder, const QByteArray& name)
{
    struct stat facts = {};
    if (::fstatat(folder, name.constData(), &facts, AT_SYMLINK_NOFOLLOW) != 0)
        return std::nullopt;
    return facts;
}

std::optional<struct stat> factsOf(int handle)
{
    struct stat facts = {};
    if (::fstat(handle, &facts) != 0)
        return std::nullopt;
    return facts;
}

bool changeMode(int folder, const QByteArray& name, mode_t mode)
{
    return ::fchmodat(folder, name.constData(), mode, AT_SYMLINK_NOFOLLOW) == 0;
}

bool giveOwnerAccess(int parent, const QByteArray& name)
{
    const auto facts = factsOf(parent, name);
    if (!facts)
        return false;
    const mode_t mode = facts->st_mode & ALLPERMS;
    return (mode & S_IRWXU) == S_IRWXU || changeMode(parent, name, mode | S_IRWXU);
}

} // namespace vormel
