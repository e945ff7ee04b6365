#include "engine/completion/SetPartners.h"

#include "engine/completion/FinishedFile.h"
#include "model/SetName.h"
#include "text/FileName.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cstdio>

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

} // namespace

ItemPtr firstVolumeBeside(const DownloadItem& item, const ItemTable& table)
{
    return partnerIn(setBaseName(item.filename()), table, &isFirstVolume);
}

ItemPtr volumeOnDisk(const QString& base, const ItemTable& table)
{
    return partnerIn(base, table, &isRarPart);
}

QString broughtToItsArchive(const DownloadItem& rev, const QString& path, const ItemTable& table)
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
    // In one step: nothing may be gone before the newcomer is there.
    return ::rename(QFile::encodeName(path).constData(), QFile::encodeName(target).constData()) == 0 ? target : path;
}

} // namespace vormel
