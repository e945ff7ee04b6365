#pragma once

#include "model/ItemId.h"
#include "platform/clock/Clock.h"

#include <QHash>
#include <QSet>
#include <QString>

#include <functional>
#include <optional>
#include <unordered_map>
#include <vector>

namespace vormel {

/// The hosts that do not answer. While one rests, one queued item of it at a time, the probe, asks it now and then, and
/// all its others are held back and spend no tries; an answer ends the rest. A rest is as long as the delay of the
/// probe's next try. Once an item has failed for good, the host is known to stay away: the time between two probes
/// grows to ten minutes, so that a night without the host takes the tries of one item and not of all. A page that leads
/// to a resting host rests in the same way, so that not all of its items are led there in vain. Hosts are known by
/// `hostKey`. UI thread only.
class HostRests
{
public:
    /// `onDue` is called when a host may be asked again. The clock must outlive this.
    HostRests(Clock& clock, std::function<void()> onDue);

    /// The host was away for the item, which is tried again after the delay.
    void failed(const QString& host, const ItemId& id, std::chrono::seconds delay);
    /// The host was away for the last try of the item.
    void failedForGood(const QString& host, const ItemId& id);
    /// The page was away for the item, which is not tried again.
    void pageFailed(const QString& page, const ItemId& id);
    /// Ends the rest, and that of the pages that led to the host. Gives the items that the host was away for meanwhile.
    QSet<ItemId> end(const QString& host);
    /// The same for all hosts.
    QSet<ItemId> endAll();
    /// The item is neither queued nor on its way any more.
    void left(const ItemId& id);
    /// The item's page has led to this host and to no other. True if others need not wait for the page any more.
    bool leads(const QString& page, const ItemId& id, const QString& host);
    /// The host to which the resting page led.
    [[nodiscard]] std::optional<QString> behind(const QString& page) const;

    [[nodiscard]] bool isEmpty() const { return m_rests.empty(); }
    /// May the item not be asked for now?
    [[nodiscard]] bool holdsBack(const QString& host, const ItemId& id) const;
    /// When the host may be asked again; nothing if it does not rest.
    [[nodiscard]] std::optional<SteadyTime> due(const QString& host) const;
    /// The items that the host was away for since it rests.
    [[nodiscard]] QSet<ItemId> failedItems(const QString& host) const;

    /// The hosts whose time has come and that nobody probes.
    [[nodiscard]] QSet<QString> withoutProbe() const;
    /// Has an item spent all its tries on the host?
    [[nodiscard]] bool isAwayForLong(const QString& host) const;
    /// Does nothing for a host that does not rest.
    void setProbe(const QString& host, const ItemId& id);
    /// Those whose time has come.
    [[nodiscard]] std::vector<ItemId> dueProbes() const;

private:
    struct Rest
    {
        SteadyTime due;
        std::optional<ItemId> probe; ///< who asks, once the time has come
        int longRests = 0;           ///< so far; above 0 the host is known to stay away
        QSet<ItemId> failed;
        std::optional<QString> behind; ///< where the page led
        Timer end;
    };

    /// What the item said of its host.
    struct Heard
    {
        Rest& rest;  ///< begun by that, if there was none
        bool isNews; ///< a probe said it, or whoever came first
    };

    [[nodiscard]] Heard heard(const QString& host, const ItemId& id);
    void wait(Rest& rest, std::chrono::seconds delay);
    void waitLong(Rest& rest, std::chrono::seconds atLeast);
    void handOver(Rest& rest);
    [[nodiscard]] const Rest* find(const QString& host) const;

    Clock& m_clock;
    std::function<void()> m_onDue;
    std::unordered_map<QString, Rest> m_rests;
};

} // namespace vormel
