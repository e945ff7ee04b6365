#pragma once

#include "model/DownloadItem.h"
#include "model/DownloadPaths.h"

#include <QByteArray>

#include <memory>
#include <optional>
#include <vector>

namespace vormel {

/// One item as the queue file holds it, ready to be written. Immutable, so that the writer's thread may read it.
struct QueueRecord
{
    QByteArray upToLocalPath;   ///< the object from its brace on
    QByteArray localPathEntry;  ///< empty without a local path
    QByteArray localPathOnDisk; ///< as the system calls it
    QByteArray behindLocalPath;

    /// The record's JSON. The local path is left out when nothing stands there now. Looks at the disk.
    void appendTo(QByteArray& json) const;
};

/// Nothing for a placeholder, which is not kept. The paths tell where a part file is looked for without being stored.
[[nodiscard]] std::shared_ptr<const QueueRecord> encodeRecord(const DownloadItem& item, const DownloadPaths& paths);

/// The whole file. Looks at the disk for local paths.
[[nodiscard]] QByteArray encodeQueue(const std::vector<std::shared_ptr<const QueueRecord>>& records);

/// Reads the whole file: items in order, links normalised, numbers of paused items taken from their part files, the
/// first of two records with the same link kept. One record of another shape spoils the whole: nothing comes back then.
[[nodiscard]] std::optional<std::vector<ItemPtr>> decodeQueue(QByteArray json, const DownloadPaths& paths);

} // namespace vormel
