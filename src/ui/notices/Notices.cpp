#include "ui/notices/Notices.h"

#include <algorithm>

namespace vormel {

Notices::Notices(Clock& clock)
    : m_clock(clock)
{}

void Notices::show(Notice notice)
{
    const QString key = notice.key;
    Timer end;
    if (notice.life)
        end = m_clock.after(*notice.life, [this, key] { takeBack(key); });
    const auto found = std::ranges::find(m_entries, key, keyOf);
    if (found == m_entries.end()) {
        m_entries.push_back({std::move(notice), std::move(end)});
        Q_EMIT appeared(key);
        return;
    }
    const Entry before = std::exchange(*found, Entry{std::move(notice), std::move(end)});
    Q_EMIT renewed(key);
    if (before.notice.onGone)
        before.notice.onGone();
}

void Notices::takeBack(const QString& key)
{
    const auto found = entry(key);
    if (found == m_entries.cend())
        return;
    const Notice notice = take(found);
    if (notice.onGone)
        notice.onGone();
}

void Notices::run(const QString& key, std::size_t action)
{
    const auto found = entry(key);
    if (found == m_entries.cend() || action >= found->notice.actions.size())
        return;
    const Notice notice = take(found);
    notice.actions[action].run();
}

const Notice* Notices::find(const QString& key) const
{
    const auto found = entry(key);
    return found == m_entries.cend() ? nullptr : &found->notice;
}

Notices::Entries::const_iterator Notices::entry(const QString& key) const
{
    return std::ranges::find(m_entries, key, keyOf);
}

Notice Notices::take(Entries::const_iterator entry)
{
    Notice notice = entry->notice;
    m_entries.erase(entry);
    Q_EMIT went(notice.key);
    return notice;
}

} // namespace vormel
