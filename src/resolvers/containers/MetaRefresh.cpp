#include "resolvers/containers/MetaRefresh.h"

#include "resolvers/containers/TagPieces.h"

#include <algorithm>

namespace vormel {

namespace {

bool isSpace(QChar letter)
{
    return letter == u' ' || (letter >= u'\t' && letter <= u'\r');
}

bool isAddressEnd(QChar letter)
{
    return letter == u'"' || letter == u'\'' || letter == u'>' || isSpace(letter);
}

/// What follows `url=` behind that semicolon; empty if nothing does.
QStringView addressBehind(QStringView page, qsizetype semicolon)
{
    constexpr QStringView name = u"url=";
    const auto begin = std::find_if_not(page.begin() + semicolon + 1, page.end(), isSpace);
    const QStringView rest = page.sliced(begin - page.begin());
    if (!rest.startsWith(name, Qt::CaseInsensitive))
        return {};
    const QStringView address = rest.sliced(name.size());
    return address.first(std::find_if(address.begin(), address.end(), isAddressEnd) - address.begin());
}

/// The attributes whose first semicolon is followed by an address.
TagPieces refreshContents(QStringView page)
{
    TagPieces contents;
    qsizetype semicolon = -1;
    QStringView address;
    for (TagPiece content : attributeOpenings(page, u"content=")) {
        // Many of them may have one semicolon in common, and a long way to it.
        if (semicolon < content.end) {
            semicolon = page.indexOf(u';', content.end);
            if (semicolon < 0)
                break;
            address = addressBehind(page, semicolon);
        }
        if (semicolon == content.end || address.isEmpty())
            continue;
        content.value = address;
        content.end = address.end() - page.begin();
        contents.push_back(content);
    }
    return contents;
}

} // namespace

std::optional<QString> metaRefreshAddress(const QString& html)
{
    const QStringView page{html};
    TagPieces refreshes = quotedAttributes(page, u"http-equiv=");
    std::erase_if(refreshes,
                  [](const TagPiece& piece) { return piece.value.compare(u"refresh", Qt::CaseInsensitive) != 0; });
    const std::vector<TagPieces> found =
        piecesOfOneTag(page, {tagOpenings(page, u"<meta"), std::move(refreshes), refreshContents(page)});
    return found.empty() ? std::nullopt : std::optional(found.front().back().value.toString());
}

} // namespace vormel
