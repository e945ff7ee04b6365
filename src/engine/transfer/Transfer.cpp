#include "engine/transfer/Transfer.h"

#include "engine/transfer/AnswerRules.h"
#include "engine/transfer/ContentHeaders.h"
#include "model/HostProfiles.h"
#include "text/PercentCoding.h"

#include <cerrno>

namespace vormel {

namespace {

/// The beginning of a page is enough to tell what it is about.
constexpr qsizetype maxPageSize = 8192;

/// Two servers on the way that contradict each other say nothing.
std::optional<std::chrono::seconds> retryAfterOf(const HttpResponse& response, WallTime now)
{
    const std::vector<QByteArray> values = response.values("Retry-After");
    return values.size() == 1 ? retryAfterFrom(values.front(), now) : std::nullopt;
}

} // namespace

Transfer::Transfer(TransferOrder order, quint64 serial, std::unique_ptr<PartFile> file, std::mutex& ioLock,
                   const Clock& clock, const HostProfiles& profiles, Listener& listener)
    : m_order(std::move(order))
    , m_serial(serial)
    , m_offset(file->size())
    , m_ioLock(ioLock)
    , m_clock(clock)
    , m_profiles(profiles)
    , m_listener(listener)
    , m_fileHandle(std::move(file))
    , m_speedTracker(clock.steadyNow())
{}

bool Transfer::closeFile()
{
    const std::lock_guard lock(m_ioLock);
    const bool isGone = m_fileHandle && m_fileHandle->removeIfEmpty();
    m_fileHandle.reset();
    return isGone;
}

bool Transfer::acceptsAnyCertificateOf(const QString& host) const
{
    return m_profiles.isTlsTrustedHost(host);
}

HttpReceiver::HeadVerdict Transfer::responseReceived(const HttpResponse& response)
{
    AskedFor asked;
    {
        const std::lock_guard lock(m_ioLock);
        if (!m_fileHandle)
            return HeadVerdict::cancel;
        m_end.statusCode = response.statusCode;
        m_end.retryAfter = retryAfterOf(response, m_clock.wallNow());
        asked = askedFor();
    }
    const JudgedAnswer answer = judgeAnswer(response, asked);
    switch (answer.kind) {
    case AnswerKind::webPage:
        return readPast();
    case AnswerKind::errorAnswer:
        return refuse(TransferEnd::Reason::errorAnswer);
    case AnswerKind::foreignRange:
        return refuse(TransferEnd::Reason::foreignRange);
    case AnswerKind::sourceChanged:
        return refuse(TransferEnd::Reason::sourceChanged);
    case AnswerKind::alreadyWhole:
        m_listener.headArrived(*this, {false, answer.total, {}});
        return refuse(TransferEnd::Reason::finished);
    case AnswerKind::whole:
    case AnswerKind::continuation:
        break;
    }
    if (takeFile(response, answer) == HeadVerdict::cancel)
        return HeadVerdict::cancel;
    m_listener.headArrived(*this, {answer.kind == AnswerKind::whole, answer.total, m_end.suggestedName});
    return HeadVerdict::allow;
}

/// Nothing of a page is kept, but its end is waited for.
HttpReceiver::HeadVerdict Transfer::readPast()
{
    const std::lock_guard lock(m_ioLock);
    m_isHtmlError = true;
    m_fileHandle.reset();
    return HeadVerdict::allow;
}

AskedFor Transfer::askedFor() const
{
    const PartMarks marks = m_fileHandle->marks();
    return {m_order.filename, m_offset, marks.total >= 1 ? marks.total : m_order.knownTotal, marks.source,
            m_order.isDirectLink};
}

HttpReceiver::HeadVerdict Transfer::takeFile(const HttpResponse& response, const JudgedAnswer& answer)
{
    const std::optional<QByteArray> disposition = response.header("Content-Disposition");
    const std::lock_guard lock(m_ioLock);
    if (!m_fileHandle)
        return HeadVerdict::cancel;
    if (answer.kind == AnswerKind::whole) {
        if (!m_fileHandle->restart()) {
            m_refusal = TransferEnd::Reason::notWritten;
            m_end.systemError = m_fileHandle->error();
            return HeadVerdict::cancel;
        }
        m_pendingBytes = 0;
    }
    m_answerStart = m_fileHandle->size();
    m_answerEnd = answer.end;
    mark(response, answer);
    if (m_order.isDirectLink && disposition)
        m_end.suggestedName = filenameFromContentDisposition(lenientText(*disposition));
    return HeadVerdict::allow;
}

void Transfer::mark(const HttpResponse& response, const JudgedAnswer& answer)
{
    PartMarks marks = m_fileHandle->marks();
    const SourceMark now = sourceMarkOf(response);
    marks.source = m_answerStart == 0 ? now : marks.source.filledUpFrom(now);
    marks.total = answer.total >= 0 ? answer.total : std::max(marks.total, m_order.knownTotal);
    m_fileHandle->setMarks(marks);
}

HttpReceiver::HeadVerdict Transfer::refuse(TransferEnd::Reason reason)
{
    const std::lock_guard lock(m_ioLock);
    m_refusal = reason;
    return HeadVerdict::cancel;
}

HttpReceiver::DataVerdict Transfer::takePage(QByteArrayView block)
{
    m_end.page.append(block.first(std::min(block.size(), maxPageSize - m_end.page.size())));
    return m_end.page.size() < maxPageSize ? DataVerdict::proceed : DataVerdict::cancel;
}

HttpReceiver::DataVerdict Transfer::dataReceived(QByteArrayView block)
{
    std::optional<double> figure;
    qint64 told = 0;
    {
        const std::lock_guard lock(m_ioLock);
        if (m_isHtmlError)
            return takePage(block);
        if (!m_fileHandle)
            return DataVerdict::cancel;
        if (!write(block))
            return DataVerdict::cancel;
        figure = m_speedTracker.record(block.size(), m_clock.steadyNow());
        if (figure)
            told = std::exchange(m_pendingBytes, 0);
    }
    if (figure)
        m_listener.ticked(*this, told, *figure);
    return m_listener.mustRest(*this, block.size()) ? DataVerdict::suspend : DataVerdict::proceed;
}

bool Transfer::write(QByteArrayView block)
{
    const qint64 before = m_fileHandle->size();
    if (m_answerEnd >= 0 && before + block.size() > m_answerEnd) {
        // Who sends more than announced may have sent something else before, too.
        static_cast<void>(m_fileHandle->cutBackTo(m_answerStart));
        m_refusal = TransferEnd::Reason::overlong;
        m_end.areBytesGivenUp = true;
        return false;
    }
    const bool isWritten = m_fileHandle->append(block);
    m_pendingBytes += m_fileHandle->size() - before;
    if (!isWritten) {
        m_refusal = TransferEnd::Reason::notWritten;
        m_end.systemError = m_fileHandle->error();
    }
    return isWritten;
}

void Transfer::completed(const std::optional<HttpError>& error)
{
    {
        const std::lock_guard lock(m_ioLock);
        if (m_isHtmlError)
            m_end.reason = TransferEnd::Reason::webPage;
        else if (m_refusal)
            m_end.reason = *m_refusal;
        else if (error)
            m_end.reason = TransferEnd::Reason::networkError;
        if (error)
            m_end.error = *error;
        // A cancel that we did not ask for comes from a client that is closing; nobody wants to hear of it.
        if (m_end.reason == TransferEnd::Reason::networkError && m_end.error.kind == HttpError::Kind::cancelled)
            return;
    }
    m_listener.ended(*this);
}

std::shared_ptr<const FileDescriptor> Transfer::fileToSync() const
{
    const std::lock_guard lock(m_ioLock);
    return m_end.reason == TransferEnd::Reason::finished && m_fileHandle ? m_fileHandle->descriptor() : nullptr;
}

TransferEnd Transfer::takeEnd(int syncError)
{
    const std::lock_guard lock(m_ioLock);
    const bool isFinished = m_fileHandle && m_end.reason == TransferEnd::Reason::finished;
    if (isFinished && syncError != 0) {
        static_cast<void>(m_fileHandle->restart());
        m_end.areBytesGivenUp = true;
    }
    if (isFinished && (syncError != 0 || !m_fileHandle->isStillThere())) {
        m_end.reason = TransferEnd::Reason::notWritten;
        m_end.systemError = syncError != 0 ? syncError : ESTALE;
    }
    m_end.isPartGone = m_fileHandle && m_end.reason != TransferEnd::Reason::finished && m_fileHandle->removeIfEmpty();
    m_fileHandle.reset();
    return std::move(m_end);
}

} // namespace vormel
