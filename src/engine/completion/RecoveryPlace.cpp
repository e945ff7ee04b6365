#include "engine/completion/RecoveryPlace.h"

#include "engine/completion/FinishedFile.h"
#include "engine/queue/SetPartners.h"
#include "model/SetName.h"
#include "platform/storage/CarefulMove.h"
#include "platform/storage/Trash.h"

#include <QDir>
#include <QFileInfo>

#include <cerrno>

namespace vormel {

namespace {

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
