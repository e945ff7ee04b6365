#include "archive/workspace/MemberName.h"

#include "archive/workspace/FreeName.h"
#include "archive/workspace/OpenFolder.h"
#include "archive/workspace/ReadableName.h"
#include "archive/workspace/WorkMark.h"

#include <QFile>
#include <QStringList>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

/// Nothing that an archive brings may pass for a work folder of ours.
bool isMark(const QByteArray& name)
{
    return name == workMarkName;
}

QStringList partsOf(const QByteArray& name, Backslash backslash)
{
    const QString text = readableName(name);
    if (backslash == Backslash::letter)
        return {text};
    QStringList parts = text.split(u'\\');
    parts.removeIf([](const QString& part) { return part.isEmpty() || part == u"." || part == u".."; });
    return parts.isEmpty() ? QStringList{u"_"_s} : parts;
}

/// Opens the folder of that name, making it where there is none. Beside a file or link of that name it gets a number.
FileDescriptor folderFor(int parent, const QString& name)
{
    constexpr mode_t mode = 0777;
    const FolderEntry wanted{QFile::encodeName(name), S_IFDIR};
    for (int number = 0;; ++number) {
        const QByteArray numbered = numberedName(wanted, number);
        if (::mkdirat(parent, numbered.constData(), mode) != 0 && errno != EEXIST)
            return {};
        FileDescriptor folder = openFolder(parent, numbered);
        if (folder.isOpen() || (errno != ENOTDIR && errno != ELOOP))
            return folder;
    }
}

/// Packers write an empty folder as a name that ends in the separator; some tools make a file of that.
bool isFolderAsFile(int folder, const FolderEntry& entry)
{
    const auto facts = factsOf(folder, entry.name);
    return entry.type == S_IFREG && entry.name.endsWith('\\') && facts && facts->st_size == 0;
}

/// An empty folder is nothing beside one of that name that is there already.
bool isRemovedAsNeedless(int folder, const FolderEntry& entry, int target, const QByteArray& name)
{
    const auto facts = entry.isFolder() ? factsOf(target, name) : std::nullopt;
    return facts && S_ISDIR(facts->st_mode) && ::unlinkat(folder, entry.name.constData(), AT_REMOVEDIR) == 0;
}

} // namespace

int giveReadableName(int folder, const FolderEntry& entry, Backslash backslash)
{
    QStringList parts = partsOf(entry.name, backslash);
    QByteArray last = QFile::encodeName(parts.back());
    if (parts.size() == 1 && last == entry.name && !isMark(last))
        return 0;
    const bool isFolder = backslash == Backslash::separator && isFolderAsFile(folder, entry);
    if (!isFolder)
        parts.removeLast();
    FileDescriptor target = openFolder(folder, ".");
    for (const QString& part : std::as_const(parts)) {
        if (target.isOpen())
            target = folderFor(target.get(), part);
    }
    if (!target.isOpen())
        return errno;
    if (isFolder)
        return ::unlinkat(folder, entry.name.constData(), 0) == 0 ? 0 : errno;
    if (isRemovedAsNeedless(folder, entry, target.get(), last))
        return 0;
    return moveToFreeName(folder, entry.name, target.get(), {last, entry.type}, 0, isMark).systemError;
}

} // namespace vormel
