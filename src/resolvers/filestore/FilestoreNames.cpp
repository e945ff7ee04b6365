#include "resolvers/filestore/FilestoreNames.h"

#include "resolvers/filestore/FilestoreWord.h"
#include "text/BoundedRegex.h"

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

constexpr auto blanksAndLetters =
    QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption;

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

} // namespace

QString extractTitleName(const QString& html)
{
    for (const QStringView found : {firstHeading(html), firstTitle(html)}) {
        const QString text = found.trimmed().toString();
        if (!text.isEmpty() && !text.toLower().contains(filestoreWord))
            return normalizeTitleName(text);
    }
    return {};
}

QString normalizeTitleName(const QString& text)
{
    static const BoundedRegex command(uR"(^Download\s+)"_s, blanksAndLetters);
    // From the first of several blanks only: a long row of them would else be read anew from each.
    static const BoundedRegex volume(uR"((?<!\s)\s+part(\d+)\s+(rar|rev)$)"_s, blanksAndLetters);
    QString name = command.removedFrom(text);
    if (const BoundedRegex::Result found = volume.search(name)) {
        const QString ending = u".part"_s + found.match.captured(1) + u'.' + found.match.captured(2).toLower();
        name.replace(found.match.capturedStart(), found.match.capturedLength(), ending);
    }
    return name;
}

} // namespace vormel
