#include "resolvers/terabytez/TerabytezAccountPage.h"

#include "text/SmallLetters.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace vormel {

bool isTerabytezAccountPage(const QString& html)
{
    constexpr std::array<QLatin1StringView, 3> markers{"premium account expire"_L1, "my affiliate"_L1,
                                                       "my username"_L1};
    const QString smallHtml = withSmallLetters(html);
    return std::any_of(markers.begin(), markers.end(),
                       [&smallHtml](QLatin1StringView marker) { return smallHtml.contains(marker); });
}

bool asksForTerabytezPassword(const QString& html)
{
    return withSmallLetters(html).contains("name=\"password\""_L1);
}

bool isSignedInToTerabytez(const QString& html)
{
    return withSmallLetters(html).contains("logout"_L1) && !asksForTerabytezPassword(html);
}

std::optional<PremiumAccountInfo> parseTerabytezAccount(const QString& html, WallTime now)
{
    if (!isTerabytezAccountPage(html))
        return std::nullopt;
    const PremiumTraffic traffic = parseTraffic(html);
    return PremiumAccountInfo{
        parsePlan(html), parseExpiry(html, {u"expir"_s, u"premium until"_s, u"valid until"_s, u"account type"_s}, now),
        traffic.remainingBytes, traffic.totalBytes};
}

PremiumAccountInfo terabytezAccountOrUnknown(const QString& html, WallTime now)
{
    return parseTerabytezAccount(html, now).value_or(PremiumAccountInfo{u"Unknown"_s, {}, {}, {}});
}

} // namespace vormel
