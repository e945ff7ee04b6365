#include "engine/queue/SetPartners.h"

#include "model/SetName.h"
#include "text/FileName.h"

#include <algorithm>

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

} // namespace vormel
