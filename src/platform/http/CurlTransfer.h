#pragma once

#include "platform/clock/Clock.h"
#include "platform/http/CookieStore.h"
#include "platform/http/HeadReader.h"
#include "platform/http/HttpClient.h"
#include "platform/http/OpenSockets.h"

#include <curl/curl.h>

#include <array>
#include <atomic>
#include <mutex>
#include <optional>
#include <vector>

namespace vormel {

/// What every transfer of one client has in common. Constant once the client stands, except the block size.
struct CurlSettings
{
    static constexpr auto maxBlockSize = qsizetype{256} * 1024;

    QByteArray userAgent;
    QByteArray extraCaFile;
    std::vector<QByteArray> connectTo;
    std::atomic<qsizetype> blockSize{maxBlockSize};
};

/// One request with all its hops, as the client's thread sees it. libcurl points into it, so it never moves. Everything
/// without a word on threads belongs to the client's thread.
class CurlTransfer
{
public:
    CurlTransfer(HttpRequest request, HttpReceiver& receiver, std::shared_ptr<const CurlSettings> settings,
                 const Clock& clock);
    CurlTransfer(const CurlTransfer&) = delete;
    CurlTransfer& operator=(const CurlTransfer&) = delete;
    ~CurlTransfer() = default;

    /// After this returns, the receiver is not called again. Any thread.
    void silence();
    [[nodiscard]] bool isSilenced() const;

    /// What becomes of a transfer whose hop libcurl has ended.
    enum class HopEnd
    {
        over, ///< the receiver was told the end
        next, ///< prepare() is due
        held, ///< a suspension holds back the last bytes; hopEnded() is due again when it is lifted
    };

    /// Any thread; what libcurl has to be told of it is the loop's business.
    void suspend();
    void liftSuspension();
    [[nodiscard]] bool isSuspended() const { return m_isSuspended; }

    /// Sets the handle up for the next hop. False if its address cannot be fetched; the transfer is over then. The
    /// sockets must outlive the hop.
    [[nodiscard]] bool prepare(OpenSockets& sockets);
    [[nodiscard]] CURL* handle() const { return m_handle.get(); }

    /// Lets go of a pause inside libcurl; what it held back comes at once.
    void unpause();

    [[nodiscard]] bool hasGathered() const { return !m_gathered.empty() && !m_isSuspended; }
    [[nodiscard]] SteadyTime gatheredSince() const { return m_gatheredSince; }
    /// Hands on what is gathered, as far as the receiver takes it.
    void flush() { handOn(1); }
    /// Has the receiver cancelled, or the server been found out?
    [[nodiscard]] bool isRefused() const { return m_stage == Stage::refused; }

    /// Has the server been silent for too long, or has the whole taken too long?
    [[nodiscard]] bool isOverdue(SteadyTime now) const;

    /// Tells the receiver the end, once.
    void finish(const std::optional<HttpError>& error);
    [[nodiscard]] HopEnd hopEnded(CURLcode code);
    /// The code to call hopEnded() with once more; nothing unless it said Held.
    [[nodiscard]] const std::optional<CURLcode>& heldEnd() const { return m_heldEnd; }

private:
    struct HandleCleanup
    {
        void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
    };
    struct ListCleanup
    {
        void operator()(curl_slist* list) const { curl_slist_free_all(list); }
    };
    using StringList = std::unique_ptr<curl_slist, ListCleanup>;

    /// Where the answer of this hop stands.
    enum class Stage
    {
        head,     ///< lines of the head are coming in
        redirect, ///< the head said to go elsewhere; the body is thrown away
        body,     ///< the head was accepted
        refused,  ///< we want no more of it
    };

    static int socketCallback(void* transfer, curl_socket_t socket, curlsocktype purpose);
    static int requestCallback(void* transfer, char* remoteIp, char* localIp, int remotePort, int localPort);
    static size_t headerCallback(char* data, size_t size, size_t count, void* transfer);
    static size_t writeCallback(char* data, size_t size, size_t count, void* transfer);

    void setOptions();
    void setCallbacks();
    void setCertificateRules();
    void setMethod();
    [[nodiscard]] bool takeHeaderLine(QByteArrayView line);
    [[nodiscard]] bool headEnded();
    [[nodiscard]] size_t takeBody(QByteArrayView bytes);
    void handOn(qsizetype least);
    void giveBlock(QByteArrayView block);
    [[nodiscard]] HttpError errorFor(CURLcode code) const;
    void refuse(HttpError::Kind kind, const QString& details);

    HttpRequest m_request;
    std::shared_ptr<const CurlSettings> m_settings;
    const Clock& m_clock;

    mutable std::mutex m_receiverLock;
    HttpReceiver* m_receiver;
    std::mutex m_suspensionLock; ///< guards the changes of the next two
    std::atomic<bool> m_isSuspended{false};
    std::atomic<quint64> m_timesLifted{0};

    std::array<char, CURL_ERROR_SIZE> m_errorText{};
    std::unique_ptr<CURL, HandleCleanup> m_handle;
    StringList m_headerList;
    StringList m_connectList;

    HeadReader m_head;
    Stage m_stage = Stage::head;
    qsizetype m_headBytes = 0;
    qsizetype m_thrownAway = 0;
    int m_hops = 0;
    OpenSockets* m_sockets = nullptr;
    bool m_isNewConnection = false;
    bool m_wantsNewConnection = false;
    QUrl m_target;
    std::optional<HttpError> m_refusal;

    std::vector<char> m_gathered;
    SteadyTime m_gatheredSince;
    std::optional<CURLcode> m_heldEnd;
    SteadyTime m_startedAt;
    std::atomic<SteadyTime> m_lastHeardAt;
};

} // namespace vormel
