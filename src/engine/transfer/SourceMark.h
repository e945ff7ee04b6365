#pragma once

#include "platform/http/HttpMessage.h"

#include <QString>

namespace vormel {

/// What an answer says of the version of the file that it brings. It is kept with the part file, so that a later piece
/// can be held against it.
struct SourceMark
{
    QString host;
    QString etag;         ///< empty: not told
    QString lastModified; ///< empty: not told
    QString coding;       ///< the Content-Encoding that came unasked; empty for the file as it is

    /// The text to be kept, and back again. Reads what earlier versions kept too, which was one mark.
    [[nodiscard]] QString toText() const;
    [[nodiscard]] static SourceMark fromText(const QString& text);

    /// The same, with what only the later answer tells; of another host nothing is taken.
    [[nodiscard]] SourceMark filledUpFrom(const SourceMark& later) const;

    friend bool operator==(const SourceMark&, const SourceMark&) = default;
};

[[nodiscard]] SourceMark sourceMarkOf(const HttpResponse& response);

/// Do the marks of two answers of one host contradict each other? Mirrors mark the same file differently, so between
/// hosts nothing is compared, and neither is a mark that only one of the answers has. Equal strong ETags settle it.
[[nodiscard]] bool isOtherVersion(const SourceMark& known, const SourceMark& now);

} // namespace vormel
