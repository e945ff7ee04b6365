#include "resolvers/filestore/FilestoreLinks.h"

#include "resolvers/filestore/FilestoreWord.h"
#include "text/LinkReference.h"
#include "text/QuotedValues.h"

#include <algorithm>
#include <array>
#include <functional>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

/// One kind of link: where its value stands, and which values are meant.
struct LinkKind
{
    QStringView lead;
    QStringView quotes;
    std::function<bool(QStringView)> isMeant;
};

/// Does the word stand there at or behind that place, with something behind it?
bool leadsOnBehind(QStringView text, QStringView word, qsizetype from)
{
    const qsizetype at = text.indexOf(word, from, Qt::CaseInsensitive);
    return at >= 0 && at + word.size() < text.size();
}

/// What stands behind "http://" or "https://"; empty for any other address.
QStringView behindScheme(QStringView address)
{
    for (const QStringView scheme : {u"http://", u"https://"}) {
        if (address.startsWith(scheme, Qt::CaseInsensitive))
            return address.mid(scheme.size());
    }
    return {};
}

/// Anywhere: "tar" and the like may go on, and query and fragment count.
bool hasFileEnding(QStringView address)
{
    constexpr std::array<QStringView, 11> endings{u"zip", u"rar", u"7z",  u"mkv", u"mp4", u"avi",
                                                  u"mov", u"pdf", u"iso", u"tar", u"gz"};
    const QStringView rest = behindScheme(address);
    for (qsizetype stop = rest.indexOf(u'.', 1); stop >= 0; stop = rest.indexOf(u'.', stop + 1)) {
        const QStringView ending = rest.mid(stop + 1);
        if (std::any_of(endings.begin(), endings.end(),
                        [ending](QStringView known) { return ending.startsWith(known, Qt::CaseInsensitive); }))
            return true;
    }
    return false;
}

std::array<LinkKind, 5> linkKinds(const QString& domain)
{
    const auto leadsInto = [](const QString& folder) {
        return [folder](QStringView value) { return leadsOnBehind(behindScheme(value), folder, 0); };
    };
    return {{
        {u"href=", u"\"", leadsInto(domain + u"/dl/"_s)},
        {u"href=", u"\"", leadsInto(domain + u"/d/"_s)},
        {u"href=", u"\"", hasFileEnding},
        {u"data-url=", u"\"", [](QStringView value) { return !value.isEmpty(); }},
        {u"location.href=", u"'\"", [](QStringView value) { return leadsOnBehind(value, QString(filestoreWord), 1); }},
    }};
}

std::optional<QStringView> firstOfKind(const QString& html, const LinkKind& kind)
{
    QuotedValues values(html, kind.lead, kind.quotes);
    std::optional<QStringView> value = values.next();
    while (value && !kind.isMeant(*value))
        value = values.next();
    return value;
}

/// A fragment never reaches the server.
QStringView withoutFragment(const Link& url)
{
    const QStringView text{url.absoluteString()};
    const qsizetype hash = text.indexOf(u'#');
    return hash < 0 ? text : text.first(hash);
}

} // namespace

bool hasPathBehindRoot(const Link& url)
{
    return !url.lastPathComponent().isEmpty();
}

std::optional<Link> extractDirectLink(const QString& html, const Link& pageUrl, const QString& domain)
{
    for (const LinkKind& kind : linkKinds(domain)) {
        const std::optional<QStringView> value = firstOfKind(html, kind);
        std::optional<Link> link = value ? httpTarget(pageUrl, *value) : std::nullopt;
        if (link && withoutFragment(*link) != withoutFragment(pageUrl))
            return link;
    }
    return std::nullopt;
}

} // namespace vormel
