#include "engine/completion/FinishedFile.h"

#include "model/SetName.h"
#include "text/FileName.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

#include <algorithm>

namespace vormel {

namespace {

ItemPtr otherHolder(const DownloadItem& item, const QString& path, const ItemTable& table)
{
    const std::span<const ItemPtr> holders = table.holdersOf(lastComponent(path));
    const auto found = std::find_if(holders.begin(), holders.end(), [&](const ItemPtr& other) {
        return other->id() != item.id() && isSameFile(*other->localPath(), path);
    });
    return found == holders.end() ? nullptr : *found;
}

bool isOneFile(const DownloadItem& item, const DownloadItem& other)
{
    if (isSetMember(item.filename()))
        return setBaseName(item.filename()) == setBaseName(other.filename());
    return item.isNameTold() && other.isNameTold();
}

} // namespace

bool isSameFile(const QString& a, const QString& b)
{
    if (QDir::cleanPath(a) == QDir::cleanPath(b))
        return true;
    struct stat one = {};
    struct stat other = {};
    return ::stat(QFile::encodeName(a).constData(), &one) == 0 &&
           ::stat(QFile::encodeName(b).constData(), &other) == 0 && one.st_dev == other.st_dev &&
           one.st_ino == other.st_ino;
}

bool isFileOfAnother(const DownloadItem& item, const QString& path, const ItemTable& table)
{
    return otherHolder(item, path, table) != nullptr;
}

bool mayBeFileOf(const DownloadItem& item, const QString& path)
{
    const bool isBegun = item.partPlace() && item.totalBytes() >= 1 && item.localPath() != path;
    return !isBegun || QFileInfo(path).size() == item.totalBytes();
}

std::optional<QString> finishedFileOf(const DownloadItem& item, const ItemTable& table, const DownloadPaths& paths)
{
    if (item.localPath() && QFileInfo(*item.localPath()).isFile())
        return item.localPath();
    const QString path = paths.finalFile(item.filename());
    if (!QFileInfo(path).isFile())
        return std::nullopt;
    const ItemPtr other = otherHolder(item, path, table);
    return !other || isOneFile(item, *other) ? std::optional(path) : std::nullopt;
}

void completeWithFile(DownloadItem& item, const QString& path)
{
    item.setPartPlace(std::nullopt);
    item.setLocalPath(path);
    item.setProgress(1.0);
    item.setWantedAnew(false);
    item.setStatus(DownloadStatus::completed);
    const QFileInfo info(path);
    if (info.exists()) {
        item.setTotalBytes(info.size());
        item.setBytesReceived(info.size());
    }
}

} // namespace vormel
