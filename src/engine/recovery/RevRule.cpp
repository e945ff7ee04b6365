#include "engine/recovery/RevRule.h"

namespace vormel {

bool shouldDownloadRev(const DownloadItem& item, const ItemTable& table)
{
    const SetTally set = table.tallyOf(item);
    return set.extracted == 0 && set.rarPartsMissing > 0;
}

} // namespace vormel
