#include "engine/groups/DownloadGroup.h"

#include "model/SetName.h"

namespace vormel {

QString groupKey(const DownloadItem& item)
{
    return isSetMember(item.filename()) ? setBaseName(item.filename()) : item.id().toString();
}

} // namespace vormel
