#include "resolvers/containers/TagPieces.h"

#include <algorithm>

namespace vormel {

namespace {

bool isQuote(QChar letter)
{
    return letter == u'"' || letter == u'\'';
}

/// Answers what can be reached without leaving the tag, from places that are asked for in the order of the page.
class TagReach
{
public:
    /// Both must outlive this.
    TagReach(QStringView page, const TagPieces& pieces)
        : m_page(page)
        , m_pieces(pieces)
    {}

    /// The last piece that one or more characters, none of them ">", lead to; null if there is none.
    [[nodiscard]] const TagPiece* last(qsizetype from)
    {
        if (m_tagEnd < from) {
            const qsizetype end = m_page.indexOf(u'>', from);
            m_tagEnd = end < 0 ? m_page.size() : end;
        }
        while (m_behind < m_pieces.size() && m_pieces[m_behind].start < m_tagEnd)
            ++m_behind;
        if (m_behind == 0 || m_pieces[m_behind - 1].start <= from)
            return nullptr;
        return &m_pieces[m_behind - 1];
    }

private:
    QStringView m_page;
    const TagPieces& m_pieces;
    qsizetype m_tagEnd = -1;
    std::size_t m_behind = 0; ///< how many pieces begin before the tag's end
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
    for (std::size_t kind = kinds.size() - 1; kind-- > 0;) {
        TagReach reach(page, kinds[kind + 1]);
        std::erase_if(kinds[kind], [&reach](const TagPiece& piece) { return reach.last(piece.end) == nullptr; });
    }
    std::vector<TagReach> reaches;
    for (std::size_t kind = 1; kind < kinds.size(); ++kind)
        reaches.emplace_back(page, kinds[kind]);
    std::vector<TagPieces> matches;
    qsizetype end = 0;
    for (const TagPiece& first : kinds.front()) {
        if (first.start < end)
            continue;
        TagPieces match{first};
        for (TagReach& reach : reaches)
            match.push_back(*reach.last(match.back().end));
        end = match.back().end;
        matches.push_back(std::move(match));
    }
    return matches;
}

} // namespace vormel
