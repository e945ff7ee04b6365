#pragma once

#include <QStringView>

#include <vector>

namespace vormel {

/// What a page has between two places: the beginning of a tag, or an attribute of one.
struct TagPiece
{
    qsizetype start = 0;
    qsizetype end = 0; ///< behind the last character
    QStringView value; ///< of an attribute, without its quotes
};

/// Of one kind, in the order of the page. They look into its text, which must outlive them.
using TagPieces = std::vector<TagPiece>;

/// The beginnings of such tags ("<input"), in any letter case.
[[nodiscard]] TagPieces tagOpenings(QStringView page, QStringView tag);

/// Such attributes ("name="), in any letter case, as far as the quote before the value; closed or not.
[[nodiscard]] TagPieces attributeOpenings(QStringView page, QStringView attribute);

/// Such attributes with their values, as far as the quote behind the value. Either kind of quote opens, and either
/// closes.
[[nodiscard]] TagPieces quotedAttributes(QStringView page, QStringView attribute);

/// The matches of a pattern such as `A[^>]+B[^>]+C`, from left to right, where A, B and C each stand for any piece of
/// one kind. The pattern is greedy: of several pieces that could follow, the last one counts from which the end can be
/// reached. An expression would go over the same text for each piece anew; this takes time that goes with the page.
[[nodiscard]] std::vector<TagPieces> piecesOfOneTag(QStringView page, std::vector<TagPieces> kinds);

} // namespace vormel
