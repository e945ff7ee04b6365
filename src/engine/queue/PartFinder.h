#pragma once

#include "engine/transfer/PartMarks.h"
#include "model/DownloadPaths.h"

#include <QHash>
#include <QSet>

namespace vormel {

/// Finds the part files of restored items. Each folder is listed once, so that a long queue does not ask the disk about
/// every item.
class PartFinder
{
public:
    struct Found
    {
        PartPlace place;
        qint64 size = 0;
        qint64 total = 0; ///< of the whole file, as the part file tells; below 1: it does not
    };

    explicit PartFinder(DownloadPaths paths)
        : m_paths(std::move(paths))
    {}

    /// The item's part file: the one that the queue has stored the path of, or that bears the usual name, or that is
    /// marked as the item's. A file without marks is only believed to be the item's if that had begun. No file is
    /// given to two items.
    [[nodiscard]] std::optional<Found> find(const DownloadItem& item, const std::optional<QString>& storedPath);

private:
    /// The part files of one folder.
    struct Listing
    {
        QSet<QString> names;
        QHash<QByteArray, QString> pathsByItem;
    };

    [[nodiscard]] const Listing& listingOf(const QString& folder);
    [[nodiscard]] std::optional<Found> claim(const DownloadItem& item, const QString& path, bool isStored);

    DownloadPaths m_paths;
    QHash<QString, Listing> m_listings;
    QSet<QString> m_claimed;
};

} // namespace vormel
