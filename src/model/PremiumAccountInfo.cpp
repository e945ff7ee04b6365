#include "model/PremiumAccountInfo.h"

#include "text/BoundedRegex.h"
#include "text/ByteCount.h"
#include "text/ProseDates.h"
#include "text/SmallLetters.h"

#include <algorithm>
#include <array>
#include <utility>

namespace vormel {

using namespace Qt::StringLiterals;

namespace {

/// How many characters around a keyword are looked at.
struct Reach
{
    qsizetype before = 0;
    qsizetype behind = 0;
};
constexpr Reach expiryReach{10, 150};
constexpr Reach trafficReach{20, 200};

/// The text around the keyword's first occurrence in the page in small letters; nothing without one. A few letters
/// become two in small letters, so the place may lie behind the page's end; mid() then gives nothing.
std::optional<QString> excerptAround(const QString& keyword, const QString& html, const QString& smallHtml, Reach reach)
{
    const qsizetype at = smallHtml.indexOf(keyword);
    if (at < 0)
        return std::nullopt;
    const qsizetype start = std::max<qsizetype>(at - reach.before, 0);
    return html.mid(start, at + keyword.size() + reach.behind - start);
}

/// A factor of 1000 for each step.
double bytesOfUnit(const QString& unit)
{
    if (unit == "TB"_L1)
        return 1e12;
    if (unit == "GB"_L1)
        return 1e9;
    return unit == "MB"_L1 ? 1e6 : 1e3;
}

/// Qt knows a long date and one in figures. This is the long one without the day of the week, its month abbreviated.
QString mediumDateText(QDate date, const QLocale& locale)
{
    // What stands between the day of the week and the first field behind it goes with it, quoted words too.
    static const BoundedRegex weekday(uR"(^dddd(?:'[^']*'|[^'dMy])*|[\s,\x{60C}]*dddd.*$)"_s);
    return locale.toString(date,
                           weekday.removedFrom(locale.dateFormat(QLocale::LongFormat)).replace("MMMM"_L1, "MMM"_L1));
}

} // namespace

std::optional<QString> expiresText(const PremiumAccountInfo& info, const QLocale& locale)
{
    if (!info.expiresAt)
        return std::nullopt;
    return u"Expires "_s + mediumDateText(info.expiresAt->toLocalTime().date(), locale);
}

std::optional<QString> trafficText(const PremiumAccountInfo& info)
{
    if (!info.trafficRemainingBytes)
        return std::nullopt;
    const QString remaining = byteCountText(*info.trafficRemainingBytes);
    return info.trafficTotalBytes ? remaining + u" / "_s + byteCountText(*info.trafficTotalBytes) : remaining;
}

PremiumAccountInfo parseAccountPage(const QString& html, WallTime now)
{
    const PremiumTraffic traffic = parseTraffic(html);
    return {parsePlan(html), parseExpiry(html, {u"expir"_s, u"valid until"_s, u"valid till"_s}, now),
            traffic.remainingBytes, traffic.totalBytes};
}

QString parsePlan(const QString& html)
{
    constexpr std::array<std::pair<QLatin1StringView, QLatin1StringView>, 4> plans{
        {{"premium"_L1, "Premium"_L1}, {"gold"_L1, "Gold"_L1}, {"vip"_L1, "VIP"_L1}, {"pro"_L1, "Pro"_L1}}};
    const QString smallHtml = withSmallLetters(html);
    for (const auto& [word, plan] : plans) {
        if (smallHtml.contains(word))
            return plan;
    }
    return u"Free"_s;
}

std::optional<QDateTime> parseExpiry(const QString& html, const QStringList& keywords, WallTime now)
{
    const qint64 nowMs = std::chrono::floor<std::chrono::milliseconds>(now.time_since_epoch()).count();
    const QString smallHtml = withSmallLetters(html);
    for (const QString& keyword : keywords) {
        const std::optional<QString> excerpt = excerptAround(keyword, html, smallHtml, expiryReach);
        for (const ProseDate& date : excerpt ? datesIn(*excerpt) : std::vector<ProseDate>()) {
            if (date.moment.toMSecsSinceEpoch() > nowMs)
                return date.moment;
        }
    }
    return std::nullopt;
}

PremiumTraffic parseTraffic(const QString& html)
{
    const QString smallHtml = withSmallLetters(html);
    for (const QString& keyword : {u"traffic"_s, u"bandwidth"_s, u"download limit"_s}) {
        const std::optional<QString> excerpt = excerptAround(keyword, html, smallHtml, trafficReach);
        const std::vector<qint64> sizes = excerpt ? parseSizes(*excerpt) : std::vector<qint64>();
        if (sizes.size() == 1)
            return {sizes[0], std::nullopt};
        if (!sizes.empty())
            return {sizes[0], sizes[1]};
    }
    return {};
}

std::vector<qint64> parseSizes(const QString& text)
{
    constexpr double firstTooLarge = 9223372036854775808.0;
    // From the first digit of a number only: a long row of digits would else be read anew from each of them.
    static const BoundedRegex size = BoundedRegex::ignoringCase(uR"((?<!\d)(\d+(?:\.\d+)?)\s*(TB|GB|MB|KB))"_s);
    std::vector<qint64> sizes;
    for (const QRegularExpressionMatch& match : size.all(text)) {
        bool isNumber = false;
        const double bytes = match.captured(1).toDouble(&isNumber) * bytesOfUnit(match.captured(2).toUpper());
        if (isNumber && bytes < firstTooLarge)
            sizes.push_back(static_cast<qint64>(bytes));
    }
    return sizes;
}

} // namespace vormel
