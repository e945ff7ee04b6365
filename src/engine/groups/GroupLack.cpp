#include "engine/groups/GroupLack.h"

#include "model/SetName.h"

#include <algorithm>
#include <map>
#include <set>

namespace vormel {

namespace {

/// No set has as many volumes; a number beyond is no count of parts.
constexpr qint64 mostParts = 9999;

/// The gaps below the highest of the ascending ranges.
std::vector<PartRange> gapsIn(const std::vector<PartRange>& known)
{
    std::vector<PartRange> gaps;
    qint64 next = 1;
    for (const PartRange& range : known) {
        if (range.first > next)
            gaps.push_back({next, range.first - 1});
        next = range.last + 1;
    }
    return gaps;
}

bool startsWithFirst(const std::vector<PartRange>& parts)
{
    return !parts.empty() && parts.front().first == 1;
}

/// The numbers of the parts, and of the recovery volumes, of a set.
class Volumes
{
public:
    void add(const DownloadItem& item)
    {
        const qint64 number = partNumber(item.filename());
        const bool hasFailed = item.status() == DownloadStatus::failed;
        if (number <= 0)
            return;
        if (!isRevName(item.filename())) {
            const auto part = m_parts.try_emplace(number, hasFailed).first;
            part->second = part->second && hasFailed;
        } else if (!hasFailed) {
            m_recovery.insert(number);
        }
    }

    [[nodiscard]] GroupLack lack() const
    {
        std::vector<qint64> known;
        std::vector<qint64> failed;
        for (const auto& [number, hasFailed] : m_parts) {
            known.push_back(number);
            if (hasFailed)
                failed.push_back(number);
        }
        GroupLack lack{rangesOf(failed), {}, 0, static_cast<qsizetype>(m_recovery.size())};
        if (!known.empty() && known.back() <= mostParts) {
            lack.highest = known.back();
            lack.missing = gapsIn(rangesOf(known));
        }
        return lack.isNothing() ? GroupLack() : lack;
    }

private:
    std::map<qint64, bool> m_parts; ///< has everything failed that would bring it?
    std::set<qint64> m_recovery;    ///< that have not failed
};

} // namespace

qint64 partCount(const std::vector<PartRange>& parts)
{
    qint64 count = 0;
    for (const PartRange& range : parts)
        count += range.last - range.first + 1;
    return count;
}

std::vector<PartRange> rangesOf(const std::vector<qint64>& numbers)
{
    std::vector<PartRange> ranges;
    for (const qint64 number : numbers) {
        if (!ranges.empty() && ranges.back().last + 1 == number)
            ranges.back().last = number;
        else
            ranges.push_back({number, number});
    }
    return ranges;
}

GroupLack::Rescue GroupLack::rescue() const
{
    if (recoveryVolumes == 0)
        return Rescue::none;
    if (recoveryVolumes < parts())
        return Rescue::tooFew;
    return startsWithFirst(failed) || startsWithFirst(missing) ? Rescue::noFirst : Rescue::enough;
}

GroupLack lackOf(std::span<const ItemPtr> set)
{
    Volumes volumes;
    for (const ItemPtr& item : set) {
        if (item->extractionStatus() == ExtractionStatus::done)
            return {};
        volumes.add(*item);
    }
    return volumes.lack();
}

} // namespace vormel
