#include "platform/http/HttpFetch.h"

#include <QObject>

namespace vormel {

namespace {

/// Collects one page on the client's thread and carries it home to the thread that asked, where it also ends its own
/// life.
class Fetch final : public QObject, public HttpReceiver
{
public:
    explicit Fetch(FetchOptions options)
        : m_options(std::move(options))
        , m_source(cancelled())
    {}

    Eventual<FetchResult> start(HttpClient& client, HttpRequest request)
    {
        Eventual<FetchResult> result = m_source.eventual();
        m_stop.emplace(m_options.stop, [this] { stop(); });
        if (!m_options.stop.stop_requested()) {
            m_task = client.makeTask(std::move(request), *this);
            m_task->resume();
        }
        return result;
    }

    RedirectVerdict redirected(const HttpResponse& response, const QUrl& target) override
    {
        if (m_options.followsRedirect && !m_options.followsRedirect(response, target)) {
            m_result.refused = target;
            return RedirectVerdict::refuse;
        }
        m_result.redirects.push_back(target);
        return RedirectVerdict::follow;
    }

    HeadVerdict responseReceived(const HttpResponse& response) override
    {
        m_result.response = response;
        if (!m_options.wantsBody || m_options.wantsBody(response))
            return HeadVerdict::allow;
        m_result.isBodyCut = true;
        return HeadVerdict::cancel;
    }

    DataVerdict dataReceived(QByteArrayView block) override
    {
        const qint64 room = m_options.maxBodySize - m_result.body.size();
        m_result.body.append(block.first(std::min<qint64>(room, block.size())));
        m_result.isBodyCut = block.size() > room;
        return m_result.isBodyCut ? DataVerdict::cancel : DataVerdict::proceed;
    }

    void completed(const std::optional<HttpError>& error) override
    {
        if (!m_result.isBodyCut)
            m_result.error = error;
        deliverLater();
    }

private:
    [[nodiscard]] static FetchResult cancelled()
    {
        FetchResult result;
        result.error = HttpError{HttpError::Kind::cancelled, 0, {}};
        return result;
    }

    /// The client calls no more once its task is gone. An end that it has told already may be on its way: whatever
    /// comes after the first delivery is dropped.
    void stop()
    {
        m_task.reset();
        m_result = cancelled();
        deliverLater();
    }

    void deliverLater()
    {
        QMetaObject::invokeMethod(
            this, [this] { deliver(); }, Qt::QueuedConnection);
    }

    void deliver()
    {
        m_stop.reset();
        m_task.reset();
        deleteLater();
        m_source.deliver(std::move(m_result));
    }

    FetchOptions m_options;
    EventualSource<FetchResult> m_source;
    FetchResult m_result;
    std::unique_ptr<HttpTask> m_task;
    std::optional<std::stop_callback<std::function<void()>>> m_stop;
};

} // namespace

Eventual<FetchResult> fetch(HttpClient& client, HttpRequest request, FetchOptions options)
{
    // Owns itself until its result is delivered; the client always tells an end.
    auto* const running = new Fetch(std::move(options));
    return running->start(client, std::move(request));
}

} // namespace vormel
