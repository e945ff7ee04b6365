#include "platform/http/CurlHttpClient.h"

#include "platform/http/CurlLoop.h"

#include <QFile>

#include <algorithm>

namespace vormel {

namespace {

/// libcurl asks to be set up once for the process, before threads use it.
void setUpLibrary()
{
    static const CURLcode done = curl_global_init(CURL_GLOBAL_DEFAULT);
    Q_ASSERT(done == CURLE_OK);
}

/// libcurl takes the first entry that fits, so the one for all stands behind those for one.
std::vector<QByteArray> connectToEntries(const QHash<QByteArray, QByteArray>& places)
{
    const QByteArray everywhere = "*";
    std::vector<QByteArray> entries;
    for (const auto& [from, to] : places.asKeyValueRange()) {
        if (from != everywhere)
            entries.push_back(from + ':' + to);
    }
    if (const auto all = places.constFind(everywhere); all != places.cend())
        entries.push_back("::" + *all);
    return entries;
}

std::shared_ptr<CurlSettings> settingsFrom(const CurlHttpClient::Options& options)
{
    auto settings = std::make_shared<CurlSettings>();
    settings->userAgent = options.userAgent;
    settings->extraCaFile = QFile::encodeName(options.extraCaFile);
    settings->connectTo = connectToEntries(options.connectTo);
    return settings;
}

class CurlTask final : public HttpTask
{
public:
    CurlTask(std::shared_ptr<CurlTransfer> transfer, std::weak_ptr<CurlLoop> loop)
        : m_transfer(std::move(transfer))
        , m_loop(std::move(loop))
    {}

    ~CurlTask() override
    {
        m_transfer->silence();
        if (const auto loop = m_loop.lock())
            loop->drop(m_transfer);
    }

    void resume() override
    {
        const auto loop = m_loop.lock();
        if (!loop)
            return;
        m_transfer->liftSuspension();
        if (m_hasStarted.exchange(true))
            loop->resume(m_transfer);
        else
            loop->start(m_transfer);
    }

    void suspend() override { m_transfer->suspend(); }

private:
    std::shared_ptr<CurlTransfer> m_transfer;
    std::weak_ptr<CurlLoop> m_loop;
    std::atomic<bool> m_hasStarted{false};
};

std::shared_ptr<CookieStore> makeCookies()
{
    setUpLibrary();
    return std::make_shared<CookieStore>();
}

} // namespace

CurlHttpClient::CurlHttpClient(const Clock& clock)
    : CurlHttpClient(clock, Options())
{}

CurlHttpClient::CurlHttpClient(const Clock& clock, const Options& options)
    : m_cookies(makeCookies())
    , m_settings(settingsFrom(options))
    , m_loop(std::make_shared<CurlLoop>(clock))
    , m_clock(clock)
{}

CurlHttpClient::~CurlHttpClient() = default;

std::unique_ptr<HttpTask> CurlHttpClient::makeTask(HttpRequest request, HttpReceiver& receiver)
{
    if (!request.cookies)
        request.cookies = m_cookies;
    auto transfer = std::make_shared<CurlTransfer>(std::move(request), receiver, m_settings, m_clock);
    return std::make_unique<CurlTask>(std::move(transfer), m_loop);
}

void CurlHttpClient::setBlockSize(qsizetype bytes)
{
    m_settings->blockSize = std::clamp<qsizetype>(bytes, 1, CurlSettings::maxBlockSize);
}

void CurlHttpClient::connectAnew()
{
    m_loop->connectAnew();
}

const std::shared_ptr<CookieStore>& CurlHttpClient::sharedCookies() const
{
    return m_cookies;
}

} // namespace vormel
