#include "engine/completion/RevRule.h"

#include "model/SetName.h"

namespace vormel {

bool shouldDownloadRev(const DownloadItem& item, const ItemTable& table)
{
    const QString base = setBaseName(item.filename());
    bool isAnyPartMissing = false;
    for (const ItemPtr& other : table.items()) {
        if (setBaseName(other->filename()) != base)
            continue;
        if (other->extractionStatus() == ExtractionStatus::done)
            return false;
        const bool isRarPart = other->filename().endsWith(u".rar", Qt::CaseInsensitive);
        isAnyPartMissing |= isRarPart && !(other->status() == DownloadStatus::completed);
    }
    return isAnyPartMissing;
}

} // namespace vormel
