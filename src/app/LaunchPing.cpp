#include "app/LaunchPing.h"

#include "platform/async/Spawn.h"
#include "platform/http/HttpFetch.h"
#include "platform/storage/UserDefaults.h"

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

const QString doneKey = u"hasPingedFirstLaunch"_s;

QByteArray queryItem(const char* name, const QString& value)
{
    return QByteArray(name) + '=' + QUrl::toPercentEncoding(value);
}

/// Nothing where the endpoint is no address.
std::optional<QUrl> pingAddress(const LaunchPing::Facts& facts)
{
    QUrl url(facts.endpoint, QUrl::StrictMode);
    if (url.isEmpty() || !url.isValid())
        return std::nullopt;
    const QByteArrayList items{queryItem("action", u"record_launch"_s), queryItem("app", u"Vormel"_s),
                               queryItem("version", facts.version.value_or(QString())), queryItem("os", facts.system)};
    url.setQuery(QString::fromLatin1(items.join('&')), QUrl::StrictMode);
    return url;
}

} // namespace

LaunchPing::LaunchPing(HttpClient& client, UserDefaults& defaults, Facts facts)
    : m_client(client)
    , m_defaults(defaults)
    , m_facts(std::move(facts))
{}

void LaunchPing::start()
{
    if (!m_defaults.boolForKey(doneKey))
        spawn(send());
}

QCoro::Task<> LaunchPing::send()
{
    const std::optional<QUrl> address = pingAddress(m_facts);
    if (!address)
        co_return;
    HttpRequest request;
    request.url = *address;
    FetchOptions options;
    options.wantsBody = [](const HttpResponse&) { return false; };
    const Lifetime::Watch watch = m_lifetime.watch();
    const FetchResult result = co_await fetch(m_client, std::move(request), std::move(options));
    if (!watch.isOver() && !result.error)
        m_defaults.setBool(doneKey, true);
}

} // namespace vormel
