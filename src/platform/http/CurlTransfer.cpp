#include "platform/http/CurlTransfer.h"

#include "platform/http/Redirect.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

constexpr int maxHops = 20;
/// Heads and trailers together; beyond that a server means harm.
constexpr auto maxHeadSize = qsizetype{256} * 1024;
/// Reading the rest of a small redirect page keeps the connection; a large one is not worth it.
constexpr auto maxThrownAway = qsizetype{64} * 1024;
constexpr auto receiveBuffer = 512L * 1024;

// NOLINTNEXTLINE(readability-function-size): a table
HttpError::Kind kindOf(CURLcode code)
{
    switch (code) {
    case CURLE_OPERATION_TIMEDOUT:
        return HttpError::Kind::timedOut;
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
        return HttpError::Kind::cannotFindHost;
    case CURLE_COULDNT_CONNECT:
        return HttpError::Kind::cannotConnect;
    case CURLE_PARTIAL_FILE:
    case CURLE_GOT_NOTHING:
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
    case CURLE_HTTP2:
    case CURLE_HTTP2_STREAM:
        return HttpError::Kind::connectionLost;
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_ISSUER_ERROR:
        return HttpError::Kind::certificateUntrusted;
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_SSL_CERTPROBLEM:
    case CURLE_SSL_CIPHER:
        return HttpError::Kind::secureConnectionFailed;
    case CURLE_UNSUPPORTED_PROTOCOL:
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_BAD_CONTENT_ENCODING:
        return HttpError::Kind::badServerResponse;
    case CURLE_URL_MALFORMAT:
        return HttpError::Kind::unsupportedUrl;
    default:
        return HttpError::Kind::other;
    }
}

bool isFetchable(const QUrl& url)
{
    return url.isValid() && !url.host().isEmpty() && (url.scheme() == u"http" || url.scheme() == u"https");
}

} // namespace

CurlTransfer::CurlTransfer(HttpRequest request, HttpReceiver& receiver, std::shared_ptr<const CurlSettings> settings,
                           const Clock& clock)
    : m_request(std::move(request))
    , m_settings(std::move(settings))
    , m_clock(clock)
    , m_receiver(&receiver)
    , m_head(m_request.url)
    , m_startedAt(clock.steadyNow())
    , m_lastHeardAt(m_startedAt)
{}

void CurlTransfer::silence()
{
    const std::lock_guard guard(m_receiverLock);
    m_receiver = nullptr;
}

bool CurlTransfer::isSilenced() const
{
    const std::lock_guard guard(m_receiverLock);
    return !m_receiver;
}

void CurlTransfer::suspend()
{
    const std::lock_guard guard(m_suspensionLock);
    m_isSuspended = true;
}

void CurlTransfer::liftSuspension()
{
    const std::lock_guard guard(m_suspensionLock);
    m_lastHeardAt = m_clock.steadyNow();
    m_isSuspended = false;
    ++m_timesLifted;
}

bool CurlTransfer::prepare(OpenSockets& sockets)
{
    m_sockets = &sockets;
    m_head = HeadReader(m_request.url);
    m_stage = Stage::head;
    m_isNewConnection = false;
    m_headBytes = 0;
    m_thrownAway = 0;
    m_lastHeardAt = m_clock.steadyNow();
    if (m_hops == 0)
        m_startedAt = m_lastHeardAt;
    if (!isFetchable(m_request.url)) {
        finish(HttpError{HttpError::Kind::unsupportedUrl, 0, m_request.url.toString()});
        return false;
    }
    // A fresh handle for each hop: to reset the old one would leak its list of cookie files.
    m_handle.reset(curl_easy_init());
    setOptions();
    setCallbacks();
    setCertificateRules();
    setMethod();
    return true;
}

void CurlTransfer::setOptions()
{
    CURL* const curl = m_handle.get();
    curl_easy_setopt(curl, CURLOPT_PRIVATE, this);
    curl_easy_setopt(curl, CURLOPT_URL, m_request.url.toEncoded(QUrl::RemoveFragment).constData());
    curl_easy_setopt(curl, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
    // Without it, whoever drops a transfer waits until its name is looked up, and all others wait with it.
    curl_easy_setopt(curl, CURLOPT_QUICK_EXIT, 1L);
    curl_easy_setopt(curl, CURLOPT_FRESH_CONNECT, m_wantsNewConnection ? 1L : 0L);
    curl_easy_setopt(curl, CURLOPT_FOLLOWLOCATION, 0L);
    // What a proxy says of the way is no answer of the server.
    curl_easy_setopt(curl, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    curl_easy_setopt(curl, CURLOPT_BUFFERSIZE, receiveBuffer);
    curl_easy_setopt(curl, CURLOPT_TCP_KEEPALIVE, 1L);
    curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, m_errorText.data());
    curl_easy_setopt(curl, CURLOPT_USERAGENT, m_settings->userAgent.constData());
    const bool isNewest = m_request.protocol == HttpRequest::Protocol::newest;
    curl_easy_setopt(curl, CURLOPT_HTTP_VERSION, isNewest ? CURL_HTTP_VERSION_2TLS : CURL_HTTP_VERSION_1_1);
    m_connectList.reset();
    for (const QByteArray& entry : m_settings->connectTo)
        m_connectList.reset(curl_slist_append(m_connectList.release(), entry.constData()));
    curl_easy_setopt(curl, CURLOPT_CONNECT_TO, m_connectList.get());
    if (m_request.cookies)
        m_request.cookies->attachTo(curl);
}

void CurlTransfer::setCallbacks()
{
    CURL* const curl = m_handle.get();
    curl_easy_setopt(curl, CURLOPT_SOCKOPTFUNCTION, &CurlTransfer::socketCallback);
    curl_easy_setopt(curl, CURLOPT_SOCKOPTDATA, this);
    curl_easy_setopt(curl, CURLOPT_PREREQFUNCTION, &CurlTransfer::requestCallback);
    curl_easy_setopt(curl, CURLOPT_PREREQDATA, this);
    curl_easy_setopt(curl, CURLOPT_HEADERFUNCTION, &CurlTransfer::headerCallback);
    curl_easy_setopt(curl, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, &CurlTransfer::writeCallback);
    curl_easy_setopt(curl, CURLOPT_WRITEDATA, this);
}

void CurlTransfer::setCertificateRules()
{
    CURL* const curl = m_handle.get();
    bool acceptsAny = false;
    {
        const std::lock_guard guard(m_receiverLock);
        acceptsAny = m_receiver && m_receiver->acceptsAnyCertificateOf(m_request.url.host().toLower());
    }
    curl_easy_setopt(curl, CURLOPT_SSL_VERIFYPEER, acceptsAny ? 0L : 1L);
    curl_easy_setopt(curl, CURLOPT_SSL_VERIFYHOST, acceptsAny ? 0L : 2L);
    if (!m_settings->extraCaFile.isEmpty())
        curl_easy_setopt(curl, CURLOPT_CAINFO, m_settings->extraCaFile.constData());
}

void CurlTransfer::setMethod()
{
    CURL* const curl = m_handle.get();
    if (m_request.method == "HEAD") {
        curl_easy_setopt(curl, CURLOPT_NOBODY, 1L);
    } else if (m_request.method == "POST") {
        curl_easy_setopt(curl, CURLOPT_POST, 1L);
        curl_easy_setopt(curl, CURLOPT_POSTFIELDS, m_request.body.constData());
        curl_easy_setopt(curl, CURLOPT_POSTFIELDSIZE_LARGE, curl_off_t{m_request.body.size()});
    }
    m_headerList.reset();
    for (const HttpHeader& header : m_request.headers) {
        // The range goes through libcurl's own option, so that it knows of it.
        if (header.name.compare("Range", Qt::CaseInsensitive) == 0 && header.value.startsWith("bytes="))
            curl_easy_setopt(curl, CURLOPT_RANGE, header.value.mid(6).constData());
        else
            m_headerList.reset(
                curl_slist_append(m_headerList.release(), (header.name + ": " + header.value).constData()));
    }
    curl_easy_setopt(curl, CURLOPT_HTTPHEADER, m_headerList.get());
}

void CurlTransfer::unpause()
{
    curl_easy_pause(m_handle.get(), CURLPAUSE_CONT);
}

int CurlTransfer::socketCallback(void* transfer, curl_socket_t socket, curlsocktype /*purpose*/)
{
    auto* const self = static_cast<CurlTransfer*>(transfer);
    self->m_sockets->add(socket);
    self->m_isNewConnection = true;
    return CURL_SOCKOPT_OK;
}

int CurlTransfer::requestCallback(void* transfer, char* /*remoteIp*/, char* /*localIp*/, int remotePort, int localPort)
{
    auto* const self = static_cast<CurlTransfer*>(transfer);
    // More came on a kept connection than was announced: libcurl would take that for the answer to this request.
    self->m_wantsNewConnection = !self->m_isNewConnection && self->m_sockets->hasUnread(localPort, remotePort);
    return self->m_wantsNewConnection ? CURL_PREREQFUNC_ABORT : CURL_PREREQFUNC_OK;
}

size_t CurlTransfer::headerCallback(char* data, size_t size, size_t count, void* transfer)
{
    const QByteArrayView line(data, static_cast<qsizetype>(size * count));
    return static_cast<CurlTransfer*>(transfer)->takeHeaderLine(line) ? size * count : 0;
}

size_t CurlTransfer::writeCallback(char* data, size_t size, size_t count, void* transfer)
{
    return static_cast<CurlTransfer*>(transfer)->takeBody({data, static_cast<qsizetype>(size * count)});
}

bool CurlTransfer::takeHeaderLine(QByteArrayView line)
{
    m_lastHeardAt = m_clock.steadyNow();
    m_headBytes += line.size();
    if (m_headBytes > maxHeadSize) {
        flush(); // what came before the trailers was good
        refuse(HttpError::Kind::badServerResponse, u"endless headers"_s);
        return false;
    }
    // Behind the head only trailers come this way; nothing here wants them.
    if (m_stage != Stage::head)
        return true;
    switch (m_head.take(line)) {
    case HeadReader::Step::more:
        return true;
    case HeadReader::Step::complete:
        return headEnded();
    case HeadReader::Step::nonsense:
        refuse(HttpError::Kind::badServerResponse, m_head.complaint());
        return false;
    }
    return false;
}

bool CurlTransfer::headEnded()
{
    const HttpResponse& response = m_head.response();
    const std::optional<QUrl> target = redirectTarget(response);
    const std::lock_guard guard(m_receiverLock);
    if (!m_receiver)
        return false;
    if (target && m_receiver->redirected(response, *target) == HttpReceiver::RedirectVerdict::follow) {
        m_stage = Stage::redirect;
        m_target = *target;
        return true;
    }
    if (m_receiver->responseReceived(response) == HttpReceiver::HeadVerdict::cancel) {
        refuse(HttpError::Kind::cancelled, {});
        return false;
    }
    m_stage = Stage::body;
    return true;
}

size_t CurlTransfer::takeBody(QByteArrayView bytes)
{
    const auto taken = static_cast<size_t>(bytes.size());
    if (m_stage == Stage::redirect) {
        m_thrownAway += bytes.size();
        return m_thrownAway > maxThrownAway ? 0 : taken;
    }
    if (m_stage != Stage::body)
        return 0;
    const qsizetype blockSize = m_settings->blockSize;
    // What a suspension held back goes first; it may also meet the next one.
    handOn(blockSize);
    if (m_isSuspended)
        return CURL_WRITEFUNC_PAUSE;
    m_lastHeardAt = m_clock.steadyNow();
    if (m_gathered.empty())
        m_gatheredSince = m_lastHeardAt;
    m_gathered.reserve(static_cast<size_t>(CurlSettings::maxBlockSize) + CURL_MAX_WRITE_SIZE);
    m_gathered.insert(m_gathered.end(), bytes.begin(), bytes.end());
    handOn(blockSize);
    return m_stage == Stage::body ? taken : 0;
}

/// Hands on blocks as long as at least so many bytes are there and the receiver takes more.
void CurlTransfer::handOn(qsizetype least)
{
    const auto size = static_cast<qsizetype>(m_gathered.size());
    qsizetype handed = 0;
    while (m_stage == Stage::body && !m_isSuspended && size - handed >= least) {
        const qsizetype count = std::min<qsizetype>(size - handed, m_settings->blockSize);
        giveBlock({m_gathered.data() + handed, count});
        handed += count;
    }
    if (handed == 0)
        return;
    m_gathered.erase(m_gathered.begin(), m_gathered.begin() + handed);
    m_gatheredSince = m_lastHeardAt;
}

void CurlTransfer::giveBlock(QByteArrayView block)
{
    const quint64 timesLifted = m_timesLifted;
    const std::lock_guard guard(m_receiverLock);
    if (!m_receiver)
        return;
    switch (m_receiver->dataReceived(block)) {
    case HttpReceiver::DataVerdict::proceed:
        break;
    case HttpReceiver::DataVerdict::suspend: {
        // Another thread may have answered this suspension with a resume() already; to suspend now would be for ever.
        const std::lock_guard suspension(m_suspensionLock);
        if (m_timesLifted == timesLifted)
            m_isSuspended = true;
        break;
    }
    case HttpReceiver::DataVerdict::cancel:
        refuse(HttpError::Kind::cancelled, {});
        break;
    }
}

bool CurlTransfer::isOverdue(SteadyTime now) const
{
    return (!m_isSuspended && now - m_lastHeardAt.load() >= m_request.idleTimeout) ||
           now - m_startedAt >= m_request.totalTimeout;
}

void CurlTransfer::refuse(HttpError::Kind kind, const QString& details)
{
    m_stage = Stage::refused;
    m_refusal = HttpError{kind, 0, details};
}

void CurlTransfer::finish(const std::optional<HttpError>& error)
{
    const std::lock_guard guard(m_receiverLock);
    if (m_receiver)
        std::exchange(m_receiver, nullptr)->completed(error);
}

HttpError CurlTransfer::errorFor(CURLcode code) const
{
    const QString own = QString::fromUtf8(m_errorText.data());
    return {kindOf(code), code, own.isEmpty() ? QString::fromUtf8(curl_easy_strerror(code)) : own};
}

CurlTransfer::HopEnd CurlTransfer::hopEnded(CURLcode code)
{
    flush();
    if (code == CURLE_ABORTED_BY_CALLBACK && m_wantsNewConnection)
        return HopEnd::next;
    if (m_stage == Stage::redirect) {
        if (++m_hops <= maxHops) {
            m_request = requestForHop(std::move(m_request), m_head.response(), m_target);
            return HopEnd::next;
        }
        finish(HttpError{HttpError::Kind::tooManyRedirects, 0, m_target.toString()});
        return HopEnd::over;
    }
    if (m_stage == Stage::body && !m_gathered.empty()) {
        m_heldEnd = code;
        return HopEnd::held;
    }
    if (m_refusal)
        finish(m_refusal);
    else if (code != CURLE_OK)
        finish(errorFor(code));
    else if (m_stage == Stage::head)
        finish(HttpError{HttpError::Kind::connectionLost, 0, u"the head of the answer was cut"_s});
    else
        finish(std::nullopt);
    return HopEnd::over;
}

} // namespace vormel
