#include "engine/queue/ItemFiles.h"

namespace vormel {

QSet<QString> filesOfItems(const std::vector<ItemPtr>& items, const DownloadPaths& paths, const QSet<ItemId>& leftOut)
{
    QSet<QString> files;
    for (const ItemPtr& item : items) {
        if (leftOut.contains(item->id()))
            continue;
        // An item that has its file, too, may be fetched again.
        const QString file = item->localPath() ? *item->localPath() : paths.finalFile(item->filename());
        files.insert(file);
        files.insert(item->partPlace() ? item->partPlace()->path : DownloadPaths::partOf(file));
    }
    return files;
}

} // namespace vormel
