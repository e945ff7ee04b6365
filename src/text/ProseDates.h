#pragma once

#include <QDateTime>
#include <QStringView>

#include <vector>

namespace vormel {

/// A date that somebody wrote for people to read.
struct ProseDate
{
    qsizetype position = 0; ///< of its first character
    QDateTime moment;       ///< in local time, always valid; a date without a time means noon of that day
};

/// The dates of a text, in their order: 2026-12-31, 31.12.2026, 31/12/2026, "31 December 2026", "Dec 31st, 2026", with
/// month names in English, Italian, German and French, whole or short, with or without accents. A time behind the date
/// ("10:20:30", "at 10:20 PM", "alle 10:20", "T10:20Z") belongs to it; what cannot be a time is passed over.
///
/// One rule settles what figures leave open: the day comes first, as in three of the four languages, and the month only
/// where that gives no date (12/31/2026) and no full stops are used; so 03/04/2027 is the third of April. A year of
/// four figures may also stand first, with hyphens or slashes. One of two figures counts from 2000 and needs day and
/// month of two figures, with full stops or slashes.
///
/// Days that no calendar has are none, nor is what belongs to something longer: "1.2.2026.4", "backup-2026-12-31.zip".
/// Takes time in proportion to the text, whatever stands there.
[[nodiscard]] std::vector<ProseDate> datesIn(QStringView text);

} // namespace vormel
