#include "engine/recovery/RevRule.h"

#include "model/SetName.h"

namespace vormel {

bool shouldDownloadRev(const DownloadItem& item, const ItemTable& table)
{
    bool isAnyPartMissing = false;
    for (const ItemPtr& other : table.itemsOfSet(setBaseName(item.filename()))) {
        if (other->extractionStatus() == ExtractionStatus::done)
            return false;
        const bool isRarPart = other->filename().endsWith(u".rar", Qt::CaseInsensitive);
        isAnyPartMissing |= isRarPart && !(other->status() == DownloadStatus::completed);
    }
    return isAnyPartMissing;
}

} // namespace vormel
