#include "resolvers/containers/TagPieces.h"

#include <algorithm>

namespace vormel {

namespace {

bool isQuote(QChar letter)
{
    return letter == u'"' || letter == u'\'';
}

/// Answers what can be reached from a place without leaving the tag.
class TagReach
{
public:
    explicit TagReach(QStringView page)
        : m_pageEnd(page.size())
    {
        for (qsizetype at = 0; at < page.size(); ++at) {
            if (page[at] == u'>')
                m_tagEnds.push_back(at);
        }
    }

    /// The last piece that one or more characters, none of them ">", lead to; null if there is none.
    [[nodiscard]] const TagPiece* last(const TagPieces& pieces, qsizetype from) const
    {
        const auto tagEnd = std::lower_bound(m_tagEnds.begin(), m_tagEnds.end(), from);
        const qsizetype limit = tagEnd == m_tagEnds.end() ? m_pageEnd : *tagEnd;
        const auto behind = std::lower_bound(pieces.begin(), pieces.end(), limit,
                                             [](const TagPiece& piece, qsizetype at) { return piece.start < at; });
        if (behind == pieces.begin() || (behind - 1)->start <= from)
            return nullptr;
        return &*(behind - 1);
    }

private:
    qsizetype m_pageEnd;
    std::vector<qsizetype> m_tagEnds;
};

} // namespace

TagPieces tagOpenings(QStringView page, QStringView tag)
{
    TagPieces pieces;
    for (qsizetype at = 0; (at = page.indexOf(tag, at, Qt::CaseInsensitive)) >= 0; at += tag.size())
        pieces.push_back({at, at + tag.size(), {}});
    return pieces;
}

TagPieces attributeOpenings(QStringView page, QStringView attribute)
{
    TagPieces pieces;
    for (qsizetype at = 0; at < page.size(); ++at) {
        if (isQuote(page[at]) && page.first(at).endsWith(attribute, Qt::CaseInsensitive))
            pieces.push_back({at - attribute.size(), at + 1, {}});
    }
    return pieces;
}

TagPieces quotedAttributes(QStringView page, QStringView attribute)
{
    TagPieces pieces = attributeOpenings(page, attribute);
    for (TagPiece& piece : pieces) {
        // The next piece has a quote, so no text is looked at twice.
        const auto quote = std::find_if(page.begin() + piece.end, page.end(), isQuote);
        if (quote == page.end()) {
            pieces.pop_back(); // only behind the last of them there can be none
            break;
        }
        const qsizetype close = quote - page.begin();
        piece.value = page.sliced(piece.end, close - piece.end);
        piece.end = close + 1;
    }
    return pieces;
}

std::vector<TagPieces> piecesOfOneTag(QStringView page, std::vector<TagPieces> kinds)
{
    const TagReach reach(page);
    for (std::size_t kind = kinds.size() - 1; kind-- > 0;) {
        const TagPieces& next = kinds[kind + 1];
        std::erase_if(kinds[kind], [&](const TagPiece& piece) { return reach.last(next, piece.end) == nullptr; });
    }
    std::vector<TagPieces> matches;
    qsizetype end = 0;
    for (const TagPiece& first : kinds.front()) {
        if (first.start < end)
            continue;
        TagPieces match{first};
        for (std::size_t kind = 1; kind < kinds.size(); ++kind)
            match.push_back(*reach.last(kinds[kind], match.back().end));
        end = match.back().end;
        matches.push_back(std::move(match));
    }
    return matches;
}

} // namespace vormel
