#pragma once

#include "platform/clock/Clock.h"
#include "platform/http/CookieStore.h"
#include "platform/http/HttpClient.h"

#include <QHash>

namespace vormel {

class CurlLoop;
struct CurlSettings;

/// HttpClient over libcurl: one multi handle on one thread of its own. Blocks are gathered per transfer up to 256 KiB
/// and handed on when full, when the network has nothing more for now, and at the end.
class CurlHttpClient final : public HttpClient
{
public:
    struct Options
    {
        QByteArray userAgent = "Vormel";
        QString extraCaFile; ///< PEM, trusted beside the system's own
        /// "host:port" to "host:port": where connections really go. "*" as the first stands for every host and port
        /// that has no entry of its own.
        QHash<QByteArray, QByteArray> connectTo;
    };

    /// The clock tells idle and total times; it must outlive the client.
    explicit CurlHttpClient(const Clock& clock);
    CurlHttpClient(const Clock& clock, const Options& options);
    /// Transfers that are still running end as cancelled.
    ~CurlHttpClient() override;

    [[nodiscard]] std::unique_ptr<HttpTask> makeTask(HttpRequest request, HttpReceiver& receiver) override;
    void setBlockSize(qsizetype bytes) override;
    void connectAnew() override;

    /// The store of all requests that name none.
    [[nodiscard]] const std::shared_ptr<CookieStore>& sharedCookies() const;

private:
    std::shared_ptr<CookieStore> m_cookies;
    std::shared_ptr<CurlSettings> m_settings;
    std::shared_ptr<CurlLoop> m_loop;
    const Clock& m_clock;
};

} // namespace vormel
