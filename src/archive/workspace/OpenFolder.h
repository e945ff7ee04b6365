#pragma once

#include "platform/storage/FileDescriptor.h"

#include <QByteArray>
#include <QHashFunctions>
#include <QString>

#include <sys/stat.h>
#include <sys/types.h>

#include <cstddef>
#include <optional>
#include <vector>

/// Folders by open handles, which no link on the way and no length of a path can lead elsewhere. Where a call fails,
/// errno says why. Any thread.
namespace vormel {

/// One file, folder or link of the machine, whatever it is called.
struct FileIdentity
{
    dev_t device = 0;
    ino_t number = 0;

    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
    friend std::size_t qHash(const FileIdentity& file, std::size_t seed = 0) noexcept
    {
        return qHashMulti(seed, quint64{file.device}, quint64{file.number});
    }
};

[[nodiscard]] FileIdentity identityOf(const struct stat& facts);
/// Of what stands at a path itself; a slash at its end follows a link. All zeros where nothing does.
[[nodiscard]] FileIdentity identityAt(const QString& path);

struct FolderEntry
{
    QByteArray name;
    mode_t type = 0; ///< S_IFREG, S_IFDIR, S_IFLNK and so on

    [[nodiscard]] bool isFolder() const { return type == S_IFDIR; }
};

/// Opens a folder as a place to work in; may be done also where it cannot be listed. A symbolic link is no folder.
[[nodiscard]] FileDescriptor openFolder(int parent, const QByteArray& name);

/// What is in a folder, sorted by name; nothing if it cannot be listed.
[[nodiscard]] std::optional<std::vector<FolderEntry>> entriesOf(int folder);

/// Facts of an entry itself; of a link, not of what it leads to.
[[nodiscard]] std::optional<struct stat> factsOf(int folder, const QByteArray& name);
[[nodiscard]] std::optional<struct stat> factsOf(int handle);

/// Changes the bits of a file or folder, never through a link, without opening it.
[[nodiscard]] bool changeMode(int folder, const QByteArray& name, mode_t mode);

/// Lets the owner list, enter and change a folder.
[[nodiscard]] bool giveOwnerAccess(int parent, const QByteArray& name);

} // namespace vormel
