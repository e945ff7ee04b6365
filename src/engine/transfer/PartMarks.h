#pragma once

#include "engine/transfer/SourceMark.h"
#include "model/DownloadItem.h"

namespace vormel {

/// What a part file says of itself, in extended attributes, where the file system keeps those: whose it is, and which
/// file it is the beginning of.
struct PartMarks
{
    QByteArray item;  ///< the id of its item
    QByteArray link;  ///< of the item's link, which it may have been removed and added again with
    qint64 total = 0; ///< size of the whole file; below 1: not known
    SourceMark source;

    /// Without a mark the file may be anybody's.
    [[nodiscard]] bool areThere() const { return !item.isEmpty() || !link.isEmpty(); }
    [[nodiscard]] bool nameOwner(const DownloadItem& owner) const;
    void setOwner(const DownloadItem& owner);

    friend bool operator==(const PartMarks&, const PartMarks&) = default;
};

/// The marks of an open file, or of the file at a path. What is not there comes back empty.
[[nodiscard]] PartMarks readMarks(int file);
[[nodiscard]] PartMarks readMarks(const QString& path);
/// False if the file system keeps none.
bool writeMarks(int file, const PartMarks& marks);
/// A finished file bears no marks.
void removeMarks(const QString& path);

} // namespace vormel
