#include "engine/transfer/ItemPart.h"

#include "text/FileName.h"

#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

constexpr int maxNames = 1000;

/// The usual path, then those with a number, as long as names of disks allow.
QString candidate(const QString& usualPath, int number)
{
    if (number == 0)
        return usualPath;
    const QFileInfo usual(usualPath);
    return u"%1/%2 (%3).download"_s.arg(usual.path(), safeFileName(usual.fileName()), QString::number(number));
}

/// A file without marks is the item's own where the queue says so, and where there is nothing in it to be mixed up.
bool isOwn(const PartFile& file, const DownloadItem& item)
{
    const PartMarks marks = file.marks();
    if (marks.areThere())
        return marks.nameOwner(item);
    return file.size() == 0 || (item.partPlace() && item.partPlace()->path == file.path());
}

/// Does something stand there that is no part file of anybody's, or of nobody who lets us read it?
bool isInTheWay(int error, const QString& path)
{
    struct stat facts = {};
    return error == EINVAL || error == EMLINK || error == ELOOP || error == EISDIR || error == ENXIO ||
           (error == EACCES && ::lstat(QFile::encodeName(path).constData(), &facts) == 0);
}

std::unique_ptr<PartFile> ownFileAt(const QString& path, const DownloadItem& item)
{
    auto file = std::make_unique<PartFile>(path, PartFile::Opening::existing);
    return file->isOpen() && isOwn(*file, item) ? std::move(file) : nullptr;
}

/// The item has got another name or folder since. On another disk its bytes stay where they are; null if they cannot
/// come along for another reason.
std::unique_ptr<PartFile> brought(std::unique_ptr<PartFile> file, const QString& usualPath)
{
    const bool isInItsFolder = QFileInfo(file->path()).path() == QFileInfo(usualPath).path();
    for (int number = 0; number < maxNames; ++number) {
        const int error = file->moveTo(candidate(usualPath, number));
        if (error == 0 || error == EXDEV || isInItsFolder)
            return file;
        if (error != EEXIST)
            break;
    }
    return nullptr;
}

OpenedPart openAmongCandidates(const DownloadItem& item, const QString& usualPath, const QSet<QString>& inUse)
{
    for (int number = 0; number < maxNames; ++number) {
        const QString path = candidate(usualPath, number);
        if (inUse.contains(path))
            continue;
        auto file = std::make_unique<PartFile>(path, PartFile::Opening::existing);
        if (file->isOpen() && isOwn(*file, item))
            return {std::move(file), 0};
        const int error = file->error();
        const bool isKnownAsOwn = item.partPlace() && item.partPlace()->path == path;
        if (!file->isOpen() && error != ENOENT && (!isInTheWay(error, path) || (isKnownAsOwn && error == EACCES)))
            return {nullptr, error};
        if (error != ENOENT)
            continue;
        file = std::make_unique<PartFile>(path, PartFile::Opening::fresh);
        if (file->isOpen())
            return {std::move(file), 0};
        if (file->error() != EEXIST)
            return {nullptr, file->error()};
    }
    return {nullptr, EEXIST};
}

} // namespace

OpenedPart openPart(const DownloadItem& item, const QString& usualPath, const QSet<QString>& inUse)
{
    OpenedPart part;
    if (item.partPlace() && item.partPlace()->path != usualPath && !inUse.contains(item.partPlace()->path)) {
        if (auto file = ownFileAt(item.partPlace()->path, item))
            part.file = brought(std::move(file), usualPath);
    }
    if (!part.file)
        part = openAmongCandidates(item, usualPath, inUse);
    if (part.file) {
        PartMarks marks = part.file->marks();
        marks.setOwner(item);
        part.file->setMarks(marks);
    }
    return part;
}

void removePart(const DownloadItem& item, const QString& usualPath)
{
    const QString known = item.partPlace() ? item.partPlace()->path : usualPath;
    for (const QString& path : {known, usualPath}) {
        if (ownFileAt(path, item))
            QFile::remove(path);
    }
}

} // namespace vormel
