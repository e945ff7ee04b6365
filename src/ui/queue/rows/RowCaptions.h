#pragma once

#include "model/AppLanguage.h"
#include "model/DownloadItem.h"

namespace vormel {

/// What stands beside the host of a row: how big the file is and how much of it is there ("1.2 GB of 4 GB"), as far as
/// no other line tells it. Empty while nothing is known.
[[nodiscard]] QString figuresText(const DownloadItem& item, AppLanguage language);

/// Why the item does not start, with what is left of its time. Empty without a reason, or with one that is not known.
[[nodiscard]] QString waitText(const ItemWait& wait, AppLanguage language, SteadyTime now);

/// When that text will be another one by itself. Nothing while it does not count.
[[nodiscard]] std::optional<SteadyTime> waitTextChangesAt(const ItemWait& wait, SteadyTime now);

/// A time that is left: "12 s", "2 min 5 s", "5 min". A second that has begun counts as a whole one.
[[nodiscard]] QString timeLeftText(std::chrono::nanoseconds left);

} // namespace vormel
