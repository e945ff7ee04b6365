#pragma once

#include "model/DownloadItem.h"

#include <span>
#include <vector>

namespace vormel {

/// Parts of a set whose numbers follow upon each other, both ends included.
struct PartRange
{
    qint64 first = 0;
    qint64 last = 0;

    friend bool operator==(const PartRange&, const PartRange&) = default;
};

[[nodiscard]] qint64 partCount(const std::vector<PartRange>& parts);

/// The ranges that cover these numbers, which are ascending.
[[nodiscard]] std::vector<PartRange> rangesOf(const std::vector<qint64>& numbers);

/// What a set lacks, as far as the names in the queue tell: nobody knows of parts behind the highest one.
struct GroupLack
{
    /// What recovery volumes can do about it.
    enum class Rescue
    {
        none,    ///< there are none
        tooFew,  ///< each rebuilds one part
        noFirst, ///< without the first part nothing is rebuilt
        enough,
    };

    std::vector<PartRange> failed;  ///< their items have failed for good
    std::vector<PartRange> missing; ///< no item has them
    qint64 highest = 0;             ///< the highest number; 0 where nothing is known of the total
    qsizetype recoveryVolumes = 0;  ///< on disk, or may still come

    [[nodiscard]] bool isNothing() const { return failed.empty() && missing.empty(); }
    [[nodiscard]] qint64 parts() const { return partCount(failed) + partCount(missing); }
    [[nodiscard]] Rescue rescue() const;

    friend bool operator==(const GroupLack&, const GroupLack&) = default;
};

/// Of all items of one base name, hidden ones included. Parts that are on their way, paused or stopped are not lacking,
/// nor is any of a set that is extracted. A part of which one of several items has not failed is not lacking either.
[[nodiscard]] GroupLack lackOf(std::span<const ItemPtr> set);

} // namespace vormel
