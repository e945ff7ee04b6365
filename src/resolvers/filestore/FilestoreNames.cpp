#include "resolvers/filestore/FilestoreNames.h"

#include "resolvers/filestore/FilestoreWord.h"
#include "text/SmallLetters.h"

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

/// What <h1[^>]*>([^<]+)</h1> matches first.
QStringView firstHeading(QStringView html)
{
    qsizetype at = 0;
    while ((at = html.indexOf(u"<h1", at, Qt::CaseInsensitive)) >= 0) {
        const qsizetype start = html.indexOf(u'>', at) + 1;
        // Whatever heading begins before this ">" ends at the same place.
        at = start > 0 ? html.indexOf(u'<', start) : -1;
        if (at < 0)
            break;
        if (at > start && html.mid(at).startsWith(u"</h1>", Qt::CaseInsensitive))
            return html.mid(start, at - start);
    }
    return {};
}

/// What <title>([^<|]+) matches first.
QStringView firstTitle(QStringView html)
{
    constexpr QStringView opening = u"<title>";
    constexpr QStringView ends = u"<|";
    qsizetype at = 0;
    while ((at = html.indexOf(opening, at, Qt::CaseInsensitive)) >= 0) {
        at += opening.size();
        const QStringView rest = html.mid(at);
        const auto end = std::find_first_of(rest.begin(), rest.end(), ends.begin(), ends.end());
        if (end > rest.begin())
            return rest.first(end - rest.begin());
    }
    return {};
}

bool isBlank(QChar c)
{
    return c.isSpace();
}

bool isDigit(QChar c)
{
    return c.isDigit();
}

QStringView withoutEnd(QStringView text, bool (*isOfTheEnd)(QChar))
{
    while (!text.isEmpty() && isOfTheEnd(text.back()))
        text.chop(1);
    return text;
}

/// Without what ^Download\s+ matches.
QStringView withoutCommand(QStringView text)
{
    constexpr QStringView command = u"Download";
    if (!text.startsWith(command, Qt::CaseInsensitive))
        return text;
    const QStringView rest = text.mid(command.size());
    const auto name = std::find_if_not(rest.begin(), rest.end(), isBlank);
    return name == rest.begin() ? text : rest.mid(name - rest.begin());
}

/// The words at the end of a name that tell of a volume.
struct VolumeWords
{
    qsizetype start = 0; ///< of the blanks before them
    QStringView number;
    QStringView ending;
};

/// What \s+part(\d+)\s+(rar|rev)$ matches. Read from the end, as nothing before can change it.
std::optional<VolumeWords> volumeWords(QStringView name)
{
    // A line break at the very end does not count.
    const QStringView line = name.endsWith(u'\n') ? name.chopped(1) : name;
    const QStringView ending = line.mid(std::max<qsizetype>(0, line.size() - 3));
    if (ending.compare(u"rar", Qt::CaseInsensitive) != 0 && ending.compare(u"rev", Qt::CaseInsensitive) != 0)
        return std::nullopt;
    const QStringView number = withoutEnd(line.chopped(ending.size()), isBlank);
    const QStringView word = withoutEnd(number, isDigit);
    if (number.size() == line.size() - ending.size() || word.size() == number.size() ||
        !word.endsWith(u"part", Qt::CaseInsensitive))
        return std::nullopt;
    const qsizetype start = withoutEnd(word.chopped(4), isBlank).size();
    if (start == word.size() - 4)
        return std::nullopt;
    return VolumeWords{start, number.mid(word.size()), ending};
}

} // namespace

QString extractTitleName(const QString& html)
{
    for (const QStringView found : {firstHeading(html), firstTitle(html)}) {
        const QString text = found.trimmed().toString();
        if (!text.isEmpty() && !withSmallLetters(text).contains(filestoreWord))
            return normalizeTitleName(text);
    }
    return {};
}

QString normalizeTitleName(const QString& text)
{
    const QStringView name = withoutCommand(text);
    const std::optional<VolumeWords> volume = volumeWords(name);
    if (!volume)
        return name.toString();
    QString normalized = name.first(volume->start).toString();
    normalized += u".part"_s;
    normalized += volume->number;
    normalized += u'.' + withSmallLetters(volume->ending.toString());
    normalized += name.mid(volume->ending.end() - name.begin());
    return normalized;
}

} // namespace vormel
