#include "engine/transfer/AnswerRules.h"

#include "engine/transfer/ContentHeaders.h"
#include "text/FileName.h"

#include <limits>

namespace vormel {

namespace {

enum Status
{
    ok = 200,
    noContent = 204,
    resetContent = 205,
    partialContent = 206,
    firstRedirect = 300,
    rangeNotSatisfiable = 416,
};

/// A page is a legitimate file only under a name that could be a page's.
bool mayBePage(const QString& filename)
{
    const QString extension = pathExtension(filename).toLower();
    return extension.isEmpty() || extension == u"html" || extension == u"htm" || extension == u"txt";
}

/// The size that an answer without a satisfiable range tells, as in "bytes */1000".
std::optional<qint64> sizeTold(const HttpResponse& response)
{
    const std::vector<QByteArray> values = response.values("Content-Range");
    const auto told = values.size() == 1 ? contentRangeFrom(values.front()) : std::nullopt;
    return told && !told->range ? told->total : std::nullopt;
}

bool comesFromAnotherVersion(const HttpResponse& response, const AskedFor& asked)
{
    return asked.comparesMarks && isOtherVersion(asked.source, sourceMarkOf(response));
}

bool saysNothingIsLeft(const HttpResponse& response, const AskedFor& asked)
{
    return response.statusCode == rangeNotSatisfiable && asked.offset >= 1 && sizeTold(response) == asked.offset &&
           (asked.knownTotal < 1 || asked.knownTotal == asked.offset) && !comesFromAnotherVersion(response, asked);
}

/// The server's file ends before the bytes on disk do, or is not as long as it was.
bool saysItIsAnotherFile(const HttpResponse& response, const AskedFor& asked)
{
    if (response.statusCode != rangeNotSatisfiable || asked.offset < 1)
        return false;
    const std::optional<qint64> size = sizeTold(response);
    return size && (*size <= asked.offset || (asked.knownTotal >= 1 && *size != asked.knownTotal));
}

/// A piece that does not say where it belongs is believed to be what was asked for, if it can be that.
JudgedAnswer judgeSilentPiece(const HttpResponse& response, const AskedFor& asked)
{
    const qint64 room = asked.knownTotal < 1 ? std::numeric_limits<qint64>::max() : asked.knownTotal - asked.offset;
    if (asked.offset == 0 || response.expectedContentLength() > room)
        return {AnswerKind::foreignRange};
    return {AnswerKind::continuation, -1, asked.knownTotal < 1 ? -1 : asked.knownTotal};
}

JudgedAnswer judgePiece(const HttpResponse& response, const AskedFor& asked)
{
    const std::vector<QByteArray> values = response.values("Content-Range");
    const bool isMultipart = response.mimeType() == "multipart/byteranges";
    const bool isCodedOtherwise = asked.offset > 0 && sourceMarkOf(response).coding != asked.source.coding;
    if (isMultipart || isCodedOtherwise || values.size() > 1)
        return {AnswerKind::foreignRange};
    if (asked.offset > 0 && comesFromAnotherVersion(response, asked))
        return {AnswerKind::sourceChanged};
    if (values.empty())
        return judgeSilentPiece(response, asked);
    const std::optional<ContentRange> told = contentRangeFrom(values.front());
    if (!told || !told->range || told->range->first != asked.offset)
        return {AnswerKind::foreignRange};
    const qint64 total = told->total.value_or(-1);
    const qint64 end = told->range->second;
    if (asked.offset == 0)
        return {AnswerKind::whole, total, end};
    const bool hasOtherSize = end > asked.knownTotal || (total >= 0 && total != asked.knownTotal);
    if (asked.knownTotal >= 1 && hasOtherSize)
        return {AnswerKind::sourceChanged};
    return {AnswerKind::continuation, total, end};
}

/// A full answer may still say that it is only a piece; then it is judged as one.
JudgedAnswer judgeWhole(const HttpResponse& response, const AskedFor& asked)
{
    const qint64 length = response.expectedContentLength();
    JudgedAnswer answer{AnswerKind::whole, std::max<qint64>(length, 0), length};
    for (const QByteArray& value : response.values("Content-Range")) {
        const std::optional<ContentRange> told = contentRangeFrom(value);
        if (!told || !told->range)
            continue;
        if (told->range->first > 0)
            return judgePiece(response, asked);
        answer.total = told->total.value_or(answer.total);
        answer.end = length < 0 ? told->range->second : length;
    }
    return answer;
}

} // namespace

JudgedAnswer judgeAnswer(const HttpResponse& response, const AskedFor& asked)
{
    const int status = response.statusCode;
    // Before the test for a page: servers send this answer as a page, and the bytes on disk must survive it.
    if (saysNothingIsLeft(response, asked))
        return {AnswerKind::alreadyWhole, asked.offset, asked.offset};
    if (!mayBePage(asked.filename) && response.mimeType() == "text/html")
        return {AnswerKind::webPage};
    if (saysItIsAnotherFile(response, asked))
        return {AnswerKind::sourceChanged};
    if (status == partialContent)
        return judgePiece(response, asked);
    if (status >= firstRedirect || status == noContent || status == resetContent)
        return {AnswerKind::errorAnswer};
    return judgeWhole(response, asked);
}

} // namespace vormel
