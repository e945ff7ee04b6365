#pragma once

#include "engine/transfer/SourceMark.h"

namespace vormel {

/// What was asked for, as far as the answer is judged by it.
struct AskedFor
{
    QString filename;
    qint64 offset = 0;     ///< bytes already on disk; above 0 a range was asked for
    qint64 knownTotal = 0; ///< below 1: not known
    SourceMark source;     ///< of the answer that those bytes came from
    /// Do the marks of one host speak of one file? Premium hosts hand the same one out from many machines.
    bool comparesMarks = true;
};

/// What an answer is good for.
enum class AnswerKind
{
    whole,         ///< the file from its first byte; whatever is on disk gives way to it
    continuation,  ///< the file from the offset asked for
    alreadyWhole,  ///< the server says that the bytes on disk are all there are
    webPage,       ///< a page instead of the file
    errorAnswer,   ///< an error status, or one that brings no file
    foreignRange,  ///< a piece of which nobody knows that it belongs where asked; nothing of it may be used
    sourceChanged, ///< a piece of another file than the one begun
};

struct JudgedAnswer
{
    AnswerKind kind = AnswerKind::whole;
    qint64 total = -1; ///< size of the whole file; 0: not known, whatever was thought before; below 0: not told
    qint64 end = -1;   ///< the place in the file behind the last byte that this answer may bring; below 0: not told
};

/// Judges an answer by its head. Pure.
[[nodiscard]] JudgedAnswer judgeAnswer(const HttpResponse& response, const AskedFor& asked);

} // namespace vormel
