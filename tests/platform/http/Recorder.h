#pragma once

#include "platform/http/HttpClient.h"

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace vormel {

/// Hears one transfer on the client's thread and lets the test look at what came, and wait for it, on its own.
class Recorder final : public HttpReceiver
{
public:
    /// All that a test may look at; a copy of it is taken under the lock.
    struct Heard
    {
        std::vector<std::pair<HttpResponse, QUrl>> redirects;
        std::optional<HttpResponse> head;
        QByteArray body;
        std::vector<qsizetype> blocks;
        bool isOver = false;
        int ends = 0;
        std::optional<HttpError> error;
    };

    // How to answer the client; to be set before the transfer begins, called on the client's thread.
    std::function<DataVerdict(QByteArrayView block)> onData;
    std::function<HeadVerdict()> onHead;
    std::function<RedirectVerdict(const QUrl& target)> onRedirect;
    std::set<QString> trustedHosts;
    bool keepsBody = true;

    [[nodiscard]] Heard heard() const;
    /// Wait for the other thread; false if it does not come within some seconds.
    [[nodiscard]] bool waitForEnd() const;
    [[nodiscard]] bool waitForHead() const;
    [[nodiscard]] bool waitForBytes(qint64 count) const;
    /// The hosts that the client asked about, in order.
    [[nodiscard]] std::vector<QString> askedHosts() const;

    [[nodiscard]] bool acceptsAnyCertificateOf(const QString& host) const override;
    RedirectVerdict redirected(const HttpResponse& response, const QUrl& target) override;
    HeadVerdict responseReceived(const HttpResponse& response) override;
    DataVerdict dataReceived(QByteArrayView block) override;
    void completed(const std::optional<HttpError>& error) override;

private:
    [[nodiscard]] bool waitFor(const std::function<bool()>& condition) const;

    mutable std::mutex m_mutex;
    mutable std::condition_variable m_changed;
    mutable std::vector<QString> m_askedHosts;
    Heard m_heard;
    qint64 m_bytes = 0;
};

} // namespace vormel
