#pragma once

#include "platform/clock/Clock.h"

#include <QDateTime>
#include <QLocale>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace vormel {

/// What a host tells of an account's plan. Never stored.
struct PremiumAccountInfo
{
    QString plan;
    std::optional<QDateTime> expiresAt; ///< no WallTime: plans for life end in 9999, and that ends in 2262
    std::optional<qint64> trafficRemainingBytes;
    std::optional<qint64> trafficTotalBytes; ///< of the period

    friend bool operator==(const PremiumAccountInfo&, const PremiumAccountInfo&) = default;
};

/// The traffic of a plan, as far as a page tells it.
struct PremiumTraffic
{
    std::optional<qint64> remainingBytes;
    std::optional<qint64> totalBytes;

    friend bool operator==(const PremiumTraffic&, const PremiumTraffic&) = default;
};

/// "Expires Dec 31, 2026", in English whatever the language, with the date as the locale writes it in a few characters.
[[nodiscard]] std::optional<QString> expiresText(const PremiumAccountInfo& info, const QLocale& locale = QLocale());

/// "9.78 GB / 46.57 GB"; only the first where no total is known.
[[nodiscard]] std::optional<QString> trafficText(const PremiumAccountInfo& info);

/// All that an account page tells.
[[nodiscard]] PremiumAccountInfo parseAccountPage(const QString& html, WallTime now);

/// "Premium", "Gold", "VIP" or "Pro", the first of these that the page has anywhere, else "Free".
[[nodiscard]] QString parsePlan(const QString& html);

/// The first date later than now that stands near the first occurrence of a keyword; keywords are in small letters and
/// are tried in their order.
[[nodiscard]] std::optional<QDateTime> parseExpiry(const QString& html, const QStringList& keywords, WallTime now);

/// The first one or two sizes behind "traffic", "bandwidth" or "download limit": what is left, and of how much.
[[nodiscard]] PremiumTraffic parseTraffic(const QString& html);

/// The sizes of a text in bytes, in their order. Hosts count 1000 to the kilobyte, though what is shown counts 1024. A
/// size that no qint64 holds is passed over.
[[nodiscard]] std::vector<qint64> parseSizes(const QString& text);

} // namespace vormel
