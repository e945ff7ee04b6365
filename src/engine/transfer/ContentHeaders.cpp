#include "engine/transfer/ContentHeaders.h"

#include "text/BoundedRegex.h"
#include "text/FileName.h"
#include "text/PercentCoding.h"

#include <QDateTime>
#include <QLocale>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

std::optional<qint64> decimal(QByteArrayView text)
{
    const bool hasOnlyDigits = std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
    bool isNumber = false;
    const qint64 value = text.toByteArray().toLongLong(&isNumber);
    return isNumber && hasOnlyDigits ? std::optional(value) : std::nullopt;
}

/// The time until an HTTP date; nothing for anything else.
std::optional<std::chrono::seconds> secondsUntil(const QByteArray& date, WallTime now)
{
    QDateTime time = QLocale::c().toDateTime(QString::fromLatin1(date), u"ddd, dd MMM yyyy hh:mm:ss 'GMT'"_s);
    time.setTimeSpec(Qt::UTC);
    if (!time.isValid())
        return std::nullopt;
    const auto elapsed = std::chrono::floor<std::chrono::seconds>(now.time_since_epoch());
    return std::chrono::seconds(time.toSecsSinceEpoch()) - elapsed;
}

/// The text of the pattern's first match without the part that the second pattern matches.
std::optional<QString> valueBehind(const QString& header, const BoundedRegex& whole, const BoundedRegex& prefix)
{
    const BoundedRegex::Result found = whole.search(header);
    if (!found)
        return std::nullopt;
    return prefix.removedFrom(found.match.captured());
}

std::optional<QString> extendedName(const QString& header)
{
    // Case-sensitive, unlike all others: servers that shout get their plain name used.
    static const BoundedRegex whole(uR"(filename\*\s*=\s*[^']*''([^;\r\n]+))"_s);
    static const BoundedRegex prefix(uR"((?i)filename\*\s*=\s*[^']*'')"_s);
    const std::optional<QString> encoded = valueBehind(header, whole, prefix);
    if (!encoded)
        return std::nullopt;
    const std::optional<QString> decoded = percentDecoded(*encoded);
    const std::optional<QString> name = decoded ? sanitizedHeaderFilename(*decoded) : std::nullopt;
    return name ? name : sanitizedHeaderFilename(*encoded);
}

} // namespace

std::optional<qint64> totalFromContentRange(const QByteArray& value)
{
    const qsizetype slash = value.lastIndexOf('/');
    if (slash < 0)
        return std::nullopt;
    return decimal(QByteArrayView(value).sliced(slash + 1).trimmed());
}

std::optional<std::chrono::seconds> retryAfterFrom(const QByteArray& value, WallTime now)
{
    constexpr std::chrono::seconds longest = std::chrono::minutes(10);
    const QByteArray text = value.trimmed();
    const bool hasOnlyDigits =
        !text.isEmpty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
    // A number of more digits than fit is a very long time.
    const std::optional<std::chrono::seconds> wait =
        hasOnlyDigits ? std::optional(std::chrono::seconds(decimal(text).value_or(longest.count())))
                      : secondsUntil(text, now);
    return wait && wait->count() > 0 ? std::optional(std::min(*wait, longest)) : std::nullopt;
}

std::optional<ContentRange> contentRangeFrom(const QByteArray& value)
{
    const QByteArrayView text = QByteArrayView(value).trimmed();
    const qsizetype blank = text.indexOf(' ');
    const qsizetype slash = text.lastIndexOf('/');
    if (blank < 0 || slash < blank || text.first(blank).compare("bytes", Qt::CaseInsensitive) != 0)
        return std::nullopt;
    ContentRange told;
    told.total = totalFromContentRange(value);
    if (!told.total && text.sliced(slash + 1).trimmed() != "*")
        return std::nullopt;
    const QByteArrayView range = text.sliced(blank, slash - blank).trimmed();
    if (range == "*")
        return told;
    const qsizetype dash = range.indexOf('-');
    const auto first = decimal(range.first(std::max<qsizetype>(dash, 0)).trimmed());
    const auto last = decimal(range.sliced(dash + 1).trimmed());
    if (!first || !last || *last < *first || *last >= told.total.value_or(std::numeric_limits<qint64>::max()))
        return std::nullopt;
    told.range = {*first, *last + 1};
    return told;
}

std::optional<QString> filenameFromContentDisposition(const QString& header)
{
    static const BoundedRegex whole(uR"((?i)filename\s*=\s*("[^"]+"|[^;\r\n]+))"_s);
    static const BoundedRegex prefix(uR"((?i)filename\s*=\s*)"_s);
    if (std::optional<QString> name = extendedName(header))
        return name;
    const std::optional<QString> plain = valueBehind(header, whole, prefix);
    return plain ? sanitizedHeaderFilename(*plain) : std::nullopt;
}

std::optional<QString> sanitizedHeaderFilename(const QString& text)
{
    QString name = lastComponent(text);
    const auto isTrimmed = [](QChar c) { return c == u'"' || c == u'\'' || c == u' '; };
    while (!name.isEmpty() && isTrimmed(name.back()))
        name.chop(1);
    while (!name.isEmpty() && isTrimmed(name.front()))
        name.remove(0, 1);
    if (name.isEmpty() || name == u"." || name == u"..")
        return std::nullopt;
    return readableName(name);
}

} // namespace vormel
