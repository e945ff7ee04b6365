#include "archive/workspace/WorkFolder.h"

#include "archive/workspace/DestinationError.h"
#include "archive/workspace/OpenFolder.h"
#include "archive/workspace/TreeRemoval.h"
#include "archive/workspace/WorkMark.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <system_error>

namespace vormel {

namespace {

constexpr const char* namePrefix = ".vormel-unpack-";
constexpr const char* filesName = "files";
constexpr mode_t ownersOnly = 0700;

[[noreturn]] void fail(int reason)
{
    throw DestinationError(QString::fromStdString(std::generic_category().message(reason)));
}

QByteArray randomName()
{
    constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyz0123456789";
    constexpr int count = 6;
    QByteArray name = namePrefix;
    for (int i = 0; i < count; ++i)
        name += letters[QRandomGenerator::global()->bounded(static_cast<quint32>(letters.size()))];
    return name;
}

/// As programs make folders, for whomever the umask lets in. False if its parent is missing.
bool makeFolder(const QString& path, QStringList& made)
{
    constexpr mode_t mode = 0777;
    if (::mkdir(QFile::encodeName(path).constData(), mode) == 0)
        made.prepend(path);
    else if (errno == ENOENT)
        return false;
    else if (errno != EEXIST)
        fail(errno);
    return true;
}

/// Adds the folders that had to be made, innermost first.
void makeWithParents(const QString& path, QStringList& made)
{
    QStringList missing{QDir::cleanPath(path)};
    while (!makeFolder(missing.back(), made)) {
        const QString parent = missing.back().section(u'/', 0, -2);
        if (parent.isEmpty())
            fail(ENOENT);
        missing << parent;
    }
    missing.removeLast();
    std::for_each(missing.rbegin(), missing.rend(), [&made](const QString& folder) {
        if (!makeFolder(folder, made))
            fail(ENOENT);
    });
}

/// The mark goes last: as long as anything is left, the folder must be known.
void removeWorkFolder(int parent, const QByteArray& name, int folder)
{
    if (!removeTree(folder, filesName))
        return;
    ::unlinkat(folder, workMarkName, 0);
    ::unlinkat(parent, name.constData(), AT_REMOVEDIR);
}

/// Just as it is made, or before it goes, a work folder has no mark and nothing else in it. Whoever works on one that
/// this takes away makes another.
void removeIfBare(int parent, const QByteArray& name, int folder)
{
    const auto facts = factsOf(folder);
    if (facts && facts->st_mode == (S_IFDIR | ownersOnly) && facts->st_uid == ::geteuid() &&
        name.size() == randomName().size())
        ::unlinkat(parent, name.constData(), AT_REMOVEDIR);
}

/// The destination itself may be reached by a link: the user chose it.
FileDescriptor openChosen(const QString& folder)
{
    return FileDescriptor(::open(QFile::encodeName(folder).constData(), O_PATH | O_DIRECTORY | O_CLOEXEC));
}

} // namespace

WorkFolder WorkFolder::make(const QString& destination)
{
    // Another run may have made the same destination and take it away again just now, as its archive failed.
    constexpr int tries = 5;
    for (int i = 1;; ++i) {
        WorkFolder work(destination);
        makeWithParents(destination, work.m_madeFolders);
        if (work.makeInside())
            return work;
        if (errno != ENOENT || i == tries)
            fail(errno);
    }
}

WorkFolder::WorkFolder(const QString& destination)
    : m_destination(destination)
{}

WorkFolder::~WorkFolder()
{
    if (m_folder.isOpen())
        removeWorkFolder(m_destinationHandle.get(), m_name, m_folder.get());
    for (const QString& folder : m_madeFolders)
        ::rmdir(QFile::encodeName(folder).constData());
}

QString WorkFolder::path() const
{
    return m_destination + u'/' + QFile::decodeName(m_name) + u'/' + QLatin1StringView(filesName);
}

bool WorkFolder::makeInside()
{
    m_destinationHandle = openChosen(m_destination);
    if (!m_destinationHandle.isOpen())
        return false;
    m_name = randomName();
    while (::mkdirat(m_destinationHandle.get(), m_name.constData(), ownersOnly) != 0) {
        if (errno != EEXIST)
            return false;
        m_name = randomName();
    }
    m_folder = openFolder(m_destinationHandle.get(), m_name);
    if (!m_folder.isOpen())
        return false;
    m_mark = putWorkMark(m_folder.get());
    if (!m_mark.isOpen() || ::mkdirat(m_folder.get(), filesName, ownersOnly) != 0)
        return false;
    m_files = openFolder(m_folder.get(), filesName);
    return m_files.isOpen();
}

void removeAbandonedWorkFolders(const QStringList& folders)
{
    for (const QString& path : folders) {
        const FileDescriptor parent = openChosen(path);
        const auto entries = parent.isOpen() ? entriesOf(parent.get()) : std::nullopt;
        if (!entries)
            continue;
        for (const FolderEntry& entry : *entries) {
            if (!entry.isFolder() || !entry.name.startsWith(namePrefix))
                continue;
            const FileDescriptor folder = openFolder(parent.get(), entry.name);
            const FileDescriptor mark = claimWorkMark(folder.get());
            if (mark.isOpen())
                removeWorkFolder(parent.get(), entry.name, folder.get());
            else
                removeIfBare(parent.get(), entry.name, folder.get());
        }
    }
}

} // namespace vormel
