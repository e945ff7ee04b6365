#include "engine/tries/HostRests.h"

#include <algorithm>

namespace vormel {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::seconds firstLongRest = 20s;
constexpr std::chrono::seconds longestRest = 10min;
/// What the host is given after its probe was taken away.
constexpr std::chrono::seconds shortRest = 2s;

} // namespace

HostRests::HostRests(Clock& clock, std::function<void()> onDue)
    : m_clock(clock)
    , m_onDue(std::move(onDue))
{}

void HostRests::failed(const QString& host, const ItemId& id, std::chrono::seconds delay)
{
    const auto [rest, isNews] = heard(host, id);
    rest.failed.insert(id);
    if (!isNews)
        return;
    if (rest.longRests > 0)
        waitLong(rest, delay);
    else
        wait(rest, delay);
}

void HostRests::failedForGood(const QString& host, const ItemId& id)
{
    const auto [rest, isNews] = heard(host, id);
    rest.failed.remove(id);
    if (!isNews)
        return;
    rest.longRests = std::max(rest.longRests, 1);
    wait(rest, std::chrono::seconds(0)); // the next item has not asked yet
}

void HostRests::pageFailed(const QString& page, const ItemId& id)
{
    const auto [rest, isNews] = heard(page, id);
    if (!isNews)
        return;
    rest.longRests = std::max(rest.longRests, 1);
    waitLong(rest, std::chrono::seconds(0));
}

bool HostRests::leads(const QString& page, const ItemId& id, const QString& host)
{
    for (auto& [key, rest] : m_rests) {
        if (rest.probe == id && key != host && key != page)
            handOver(rest);
    }
    const auto rest = m_rests.find(page);
    if (page == host || (rest != m_rests.end() && rest->second.probe != id))
        return false;
    if (holdsBack(host, id)) {
        pageFailed(page, id);
        m_rests.at(page).behind = host;
        return false;
    }
    if (!find(host))
        return m_rests.erase(page) > 0;
    // The item asks the resting host now, for the page, too; it may do so for hours.
    if (rest != m_rests.end()) {
        rest->second.behind = host;
        handOver(rest->second);
    }
    return false;
}

HostRests::Heard HostRests::heard(const QString& host, const ItemId& id)
{
    const auto [found, isNew] = m_rests.try_emplace(host);
    Rest& rest = found->second;
    // Others were asked for before the rest began, and only say once more what is known.
    const bool isNews = isNew || rest.probe == id;
    if (isNews)
        rest.probe.reset();
    return {rest, isNews};
}

void HostRests::wait(Rest& rest, std::chrono::seconds delay)
{
    rest.due = m_clock.steadyNow() + delay;
    rest.end = m_clock.after(delay, [this] { m_onDue(); });
}

void HostRests::waitLong(Rest& rest, std::chrono::seconds atLeast)
{
    std::chrono::seconds delay = firstLongRest;
    for (int i = 1; i < rest.longRests && delay < longestRest; ++i)
        delay *= 2;
    ++rest.longRests;
    wait(rest, std::max(std::min(delay, longestRest), atLeast));
}

QSet<ItemId> HostRests::end(const QString& host)
{
    std::erase_if(m_rests, [&host](const auto& entry) { return entry.second.behind == host; });
    const auto rest = m_rests.extract(host);
    return rest ? rest.mapped().failed : QSet<ItemId>();
}

QSet<ItemId> HostRests::endAll()
{
    QSet<ItemId> failed;
    for (const auto& [host, rest] : m_rests)
        failed.unite(rest.failed);
    m_rests.clear();
    return failed;
}

void HostRests::left(const ItemId& id)
{
    for (auto& [host, rest] : m_rests) {
        rest.failed.remove(id);
        if (rest.probe == id)
            handOver(rest);
    }
}

void HostRests::handOver(Rest& rest)
{
    rest.probe.reset();
    wait(rest, std::max(std::chrono::ceil<std::chrono::seconds>(rest.due - m_clock.steadyNow()), shortRest));
}

std::optional<QString> HostRests::behind(const QString& page) const
{
    const Rest* const rest = find(page);
    return rest ? rest->behind : std::nullopt;
}

const HostRests::Rest* HostRests::find(const QString& host) const
{
    const auto found = m_rests.find(host);
    return found == m_rests.end() ? nullptr : &found->second;
}

bool HostRests::holdsBack(const QString& host, const ItemId& id) const
{
    const Rest* const rest = find(host);
    return rest && (rest->probe != id || m_clock.steadyNow() < rest->due);
}

std::optional<SteadyTime> HostRests::due(const QString& host) const
{
    const Rest* const rest = find(host);
    return rest ? std::optional(rest->due) : std::nullopt;
}

QSet<ItemId> HostRests::failedItems(const QString& host) const
{
    const Rest* const rest = find(host);
    return rest ? rest->failed : QSet<ItemId>();
}

QSet<QString> HostRests::withoutProbe() const
{
    QSet<QString> hosts;
    for (const auto& [host, rest] : m_rests) {
        if (!rest.probe && rest.due <= m_clock.steadyNow())
            hosts.insert(host);
    }
    return hosts;
}

std::vector<ItemId> HostRests::dueProbes() const
{
    std::vector<ItemId> probes;
    for (const auto& [host, rest] : m_rests) {
        if (rest.probe && rest.due <= m_clock.steadyNow())
            probes.push_back(*rest.probe);
    }
    return probes;
}

bool HostRests::isAwayForLong(const QString& host) const
{
    const Rest* const rest = find(host);
    return rest && rest->longRests > 0;
}

void HostRests::setProbe(const QString& host, const ItemId& id)
{
    if (const auto found = m_rests.find(host); found != m_rests.end())
        found->second.probe = id;
}

} // namespace vormel
