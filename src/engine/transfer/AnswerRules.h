#pragma once

#include "platform/http/HttpMessage.h"

#include <QString>

namespace vormel {

/// What was asked for, as far as the answer is judged by it.
struct AskedFor
{
    QString filename;
    qint64 offset = 0;     ///< bytes already on disk; above 0 a range was asked for
    qint64 knownTotal = 0; ///< below 1: not known
    QString knownSource;   ///< fingerprint of the answer that those bytes came from; empty if not known
};

/// What an answer is good for.
enum class AnswerKind
{
    Whole,         ///< the file from its first byte; whatever is on disk gives way to it
    Continuation,  ///< the file from the offset asked for
    AlreadyWhole,  ///< the server says that the bytes on disk are all there are
    WebPage,       ///< a page instead of the file
    ErrorAnswer,   ///< an error status, or one that brings no file
    ForeignRange,  ///< a piece that does not begin where asked; nothing of it may be used
    SourceChanged, ///< a piece of another file than the one begun
};

struct Answer
{
    AnswerKind kind = AnswerKind::Whole;
    qint64 total = -1; ///< size of the whole file; below 1: the answer does not tell
};

/// Judges an answer by its head. Pure.
[[nodiscard]] Answer judgeAnswer(const HttpResponse& response, const AskedFor& asked);

/// What tells one version of a file at one host from another: the host with a strong ETag or else the date of the last
/// change. Empty if the answer names neither.
[[nodiscard]] QString sourceFingerprint(const HttpResponse& response);

} // namespace vormel
