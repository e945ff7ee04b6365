#include "engine/transfer/AnswerRules.h"

#include "engine/transfer/ContentHeaders.h"
#include "text/FileName.h"
#include "text/PercentCoding.h"

namespace vormel {

namespace {

enum Status
{
    Ok = 200,
    NoContent = 204,
    ResetContent = 205,
    PartialContent = 206,
    FirstRedirect = 300,
    RangeNotSatisfiable = 416,
};

/// A page is a legitimate file only under a name that could be a page's.
bool mayBePage(const QString& filename)
{
    const QString extension = pathExtension(filename).toLower();
    return extension.isEmpty() || extension == u"html" || extension == u"htm" || extension == u"txt";
}

bool saysNothingIsLeft(const HttpResponse& response, const AskedFor& asked)
{
    if (response.statusCode != RangeNotSatisfiable || asked.offset < 1)
        return false;
    return totalFromContentRange(response.header("Content-Range").value_or(QByteArray())) == asked.offset;
}

/// Both fingerprints of one host: only then can they be compared, as mirrors mark the same file differently.
bool comesFromAnotherVersion(const QString& known, const QString& now)
{
    const auto host = [](const QString& fingerprint) {
        return QStringView{fingerprint}.left(fingerprint.indexOf(u'\n'));
    };
    return !known.isEmpty() && !now.isEmpty() && host(known) == host(now) && known != now;
}

Answer judgePiece(const HttpResponse& response, const AskedFor& asked)
{
    if (response.mimeType() == "multipart/byteranges")
        return {AnswerKind::ForeignRange, -1};
    const std::optional<QByteArray> range = response.header("Content-Range");
    const qint64 total = range ? totalFromContentRange(*range).value_or(-1) : -1;
    if (range && startFromContentRange(*range) != asked.offset)
        return {AnswerKind::ForeignRange, -1};
    if (asked.offset == 0)
        return {AnswerKind::Whole, total};
    const bool hasOtherSize = total >= 1 && asked.knownTotal >= 1 && total != asked.knownTotal;
    if (hasOtherSize || comesFromAnotherVersion(asked.knownSource, sourceFingerprint(response)))
        return {AnswerKind::SourceChanged, -1};
    return {AnswerKind::Continuation, total};
}

} // namespace

Answer judgeAnswer(const HttpResponse& response, const AskedFor& asked)
{
    const int status = response.statusCode;
    // Before the test for a page: servers send this answer as a page, and the bytes on disk must survive it.
    if (saysNothingIsLeft(response, asked))
        return {AnswerKind::AlreadyWhole, asked.offset};
    if (!mayBePage(asked.filename) && response.mimeType() == "text/html")
        return {AnswerKind::WebPage, -1};
    if (status == PartialContent)
        return judgePiece(response, asked);
    if (status >= FirstRedirect || status == NoContent || status == ResetContent)
        return {AnswerKind::ErrorAnswer, -1};
    return {AnswerKind::Whole, response.expectedContentLength()};
}

QString sourceFingerprint(const HttpResponse& response)
{
    QByteArray mark = response.header("ETag").value_or(QByteArray());
    if (mark.startsWith("W/"))
        mark.clear();
    if (mark.isEmpty())
        mark = response.header("Last-Modified").value_or(QByteArray());
    if (mark.isEmpty())
        return {};
    return response.url.host() + u'\n' + lenientText(mark.left(256));
}

} // namespace vormel
