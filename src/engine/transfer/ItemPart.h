#pragma once

#include "engine/transfer/PartFile.h"

#include <QSet>

namespace vormel {

/// An open part file, or the system's error number.
struct OpenedPart
{
    std::unique_ptr<PartFile> file;
    int systemError = 0;
};

/// Opens the part file of an item, marked as its own. What the item or its link has begun is gone on with, wherever it
/// lies, and brought to the usual path where that can be done in one step; else a new file is made there. Whatever
/// stands in the way and is not the item's is left alone, and the item's file gets a number. `inUse` are the part files
/// that others write at this moment. Looks at the disk.
[[nodiscard]] OpenedPart openPart(const DownloadItem& item, const QString& usualPath, const QSet<QString>& inUse);

/// Deletes what the item has begun, so that it begins anew. Files of others stay.
void removePart(const DownloadItem& item, const QString& usualPath);

} // namespace vormel
