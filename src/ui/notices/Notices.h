#pragma once

#include "platform/clock/Clock.h"
#include "ui/notices/Notice.h"

#include <QObject>

#include <list>

namespace vormel {

/// The notices that are shown now. Knows no widget. UI thread only.
class Notices final : public QObject
{
    Q_OBJECT

public:
    /// The clock must outlive this. Notices that are there at its end go without a word to anybody.
    explicit Notices(Clock& clock);

    /// Shows it, in the place of the one with the same key if there is one.
    void show(Notice notice);
    /// Takes it back; nothing happens if it is not there.
    void takeBack(const QString& key);
    /// Does what its action does, after it has gone. Nothing happens if there is none such.
    void run(const QString& key, std::size_t action);

    /// Null if it is not there.
    [[nodiscard]] const Notice* find(const QString& key) const;

Q_SIGNALS:
    void appeared(const QString& key);
    void renewed(const QString& key);
    void went(const QString& key);

private:
    struct Entry
    {
        Notice notice;
        Timer end;
    };

    using Entries = std::list<Entry>;

    static const QString& keyOf(const Entry& entry) { return entry.notice.key; }

    [[nodiscard]] Entries::const_iterator entry(const QString& key) const;
    /// Taken out, and told.
    Notice take(Entries::const_iterator entry);

    Clock& m_clock;
    Entries m_entries;
};

} // namespace vormel
