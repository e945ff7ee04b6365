#include "engine/completion/SetPartners.h"

#include "engine/completion/FinishedFile.h"
#include "model/SetName.h"
#include "platform/storage/CarefulMove.h"
#include "platform/storage/Trash.h"
#include "text/FileName.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>

namespace vormel {

namespace {

ItemPtr partnerIn(const QString& base, const ItemTable& table, bool (*isPartner)(const QString& name))
{
    const std::span<const ItemPtr> set = table.itemsOfSet(base);
    const auto found = std::find_if(set.begin(), set.end(), [&](const ItemPtr& other) {
        return other->localPath() && isPartner(lastComponent(*other->localPath()));
    });
    return found == set.end() ? nullptr : *found;
}

/// 0, or the system's error number. Nothing is gone before the newcomer is there.
int moveInPlaceOf(const QString& path, const QString& target, Trash& trash)
{
    const int error = moveWithoutReplacing(path, target);
    if (error != EEXIST || QFileInfo(target).isDir())
        return error;
    if (exchangeFiles(path, target) == 0) {
        static_cast<void>(trash.moveToTrash(path)); // where it cannot, what was there stays at the newcomer's place
        return 0;
    }
    return trash.moveToTrash(target) ? moveWithoutReplacing(path, target) : error;
}

} // namespace

ItemPtr firstVolumeBeside(const DownloadItem& item, const ItemTable& table)
{
    return partnerIn(setBaseName(item.filename()), table, &isFirstVolume);
}

ItemPtr volumeOnDisk(const QString& base, const ItemTable& table)
{
    return partnerIn(base, table, &isRarPart);
}

QString broughtToItsArchive(const DownloadItem& rev, const QString& path, const ItemTable& table, Trash& trash)
{
    const ItemPtr partner = volumeOnDisk(setBaseName(rev.filename()), table);
    const QFileInfo arrived(path);
    if (!partner || QFileInfo(*partner->localPath()).path() == arrived.path())
        return path;
    const QString folder = QFileInfo(*partner->localPath()).path();
    const QString target = folder + u'/' + arrived.fileName();
    if (isFileOfAnother(rev, target, table))
        return path;
    QDir().mkpath(folder);
    return moveInPlaceOf(path, target, trash) == 0 ? target : path;
}

} // namespace vormel
