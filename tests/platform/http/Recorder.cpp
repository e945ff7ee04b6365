#include "platform/http/Recorder.h"

#include <chrono>

namespace vormel {

Recorder::Heard Recorder::heard() const
{
    const std::lock_guard lock(m_mutex);
    return m_heard;
}

bool Recorder::waitFor(const std::function<bool()>& condition) const
{
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, std::chrono::seconds(10), condition);
}

bool Recorder::waitForEnd() const
{
    return waitFor([this] { return m_heard.isOver; });
}

bool Recorder::waitForHead() const
{
    return waitFor([this] { return m_heard.head.has_value(); });
}

bool Recorder::waitForBytes(qint64 count) const
{
    return waitFor([this, count] { return m_bytes >= count; });
}

std::vector<QString> Recorder::askedHosts() const
{
    const std::lock_guard lock(m_mutex);
    return m_askedHosts;
}

bool Recorder::acceptsAnyCertificateOf(const QString& host) const
{
    const std::lock_guard lock(m_mutex);
    m_askedHosts.push_back(host);
    return trustedHosts.contains(host);
}

HttpReceiver::RedirectVerdict Recorder::redirected(const HttpResponse& response, const QUrl& target)
{
    const std::lock_guard lock(m_mutex);
    m_heard.redirects.emplace_back(response, target);
    return onRedirect ? onRedirect(target) : RedirectVerdict::follow;
}

HttpReceiver::HeadVerdict Recorder::responseReceived(const HttpResponse& response)
{
    const HeadVerdict verdict = onHead ? onHead() : HeadVerdict::allow;
    const std::lock_guard lock(m_mutex);
    m_heard.head = response;
    m_changed.notify_all();
    return verdict;
}

HttpReceiver::DataVerdict Recorder::dataReceived(QByteArrayView block)
{
    const DataVerdict verdict = onData ? onData(block) : DataVerdict::proceed;
    const std::lock_guard lock(m_mutex);
    m_heard.blocks.push_back(block.size());
    m_bytes += block.size();
    if (keepsBody)
        m_heard.body.append(block);
    m_changed.notify_all();
    return verdict;
}

void Recorder::completed(const std::optional<HttpError>& error)
{
    const std::lock_guard lock(m_mutex);
    m_heard.isOver = true;
    ++m_heard.ends;
    m_heard.error = error;
    m_changed.notify_all();
}

} // namespace vormel
