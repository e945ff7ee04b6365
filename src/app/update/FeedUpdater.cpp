#include "app/update/FeedUpdater.h"

#include "platform/async/Spawn.h"
#include "platform/http/HttpFetch.h"
#include "platform/storage/UserDefaults.h"

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

using std::chrono::seconds;

constexpr seconds interval = std::chrono::hours(24);
constexpr qint64 maxFeedSize = qint64{1024} * 1024;
constexpr int ok = 200;
const QString lastCheckKey = u"lastUpdateCheck"_s; // seconds since 1970

seconds sinceEpoch(WallTime time)
{
    return std::chrono::duration_cast<seconds>(time.time_since_epoch());
}

/// How long until the next look is due; 0 if it is. A last time that cannot be comes from a clock that was wrong.
seconds untilDue(const UserDefaults& defaults, seconds now)
{
    const seconds last(defaults.objectForKey(lastCheckKey).value_or(QJsonValue()).toInteger());
    return last > now || last < seconds::zero() ? seconds::zero() : std::max(seconds::zero(), last + interval - now);
}

bool isSecure(const QUrl& url)
{
    return url.scheme() == u"https";
}

} // namespace

FeedUpdater::FeedUpdater(HttpClient& client, UserDefaults& defaults, Clock& clock, const QUrl& feed, Version current)
    : m_client(client)
    , m_defaults(defaults)
    , m_clock(clock)
    , m_feed(feed)
    , m_current(std::move(current))
{
    if (hasFeed())
        planNextCheck();
}

FeedUpdater::~FeedUpdater() = default;

bool FeedUpdater::hasFeed() const
{
    return m_feed.isValid() && isSecure(m_feed);
}

bool FeedUpdater::canCheckForUpdates() const
{
    return hasFeed() && !m_isChecking;
}

void FeedUpdater::checkForUpdates()
{
    if (canCheckForUpdates())
        startCheck(Reason::userAsked);
}

void FeedUpdater::planNextCheck()
{
    m_nextCheck = m_clock.after(untilDue(m_defaults, sinceEpoch(m_clock.wallNow())), [this] {
        // By now the user may have looked by hand, or the wall clock have been set.
        if (canCheckForUpdates() && untilDue(m_defaults, sinceEpoch(m_clock.wallNow())) == seconds::zero())
            startCheck(Reason::byItself);
        else
            planNextCheck();
    });
}

void FeedUpdater::startCheck(Reason reason)
{
    // Also a failed look counts, or a feed that is down would be asked at every start.
    m_defaults.setInteger(lastCheckKey, sinceEpoch(m_clock.wallNow()).count());
    planNextCheck();
    spawn(check(reason));
}

QCoro::Task<> FeedUpdater::check(Reason reason)
{
    setChecking(true);
    HttpRequest request;
    request.url = m_feed;
    request.protocol = HttpRequest::Protocol::newest;
    FetchOptions options;
    options.maxBodySize = maxFeedSize;
    options.followsRedirect = [](const HttpResponse&, const QUrl& target) { return isSecure(target); };
    const Lifetime::Watch watch = m_lifetime.watch();
    const FetchResult result = co_await fetch(m_client, std::move(request), std::move(options));
    if (watch.isOver())
        co_return;
    setChecking(false);
    judge(result, reason);
}

void FeedUpdater::judge(const FetchResult& result, Reason reason)
{
    const bool wasAsked = reason == Reason::userAsked;
    const bool isWhole = !result.error && result.response.statusCode == ok && !result.isBodyCut;
    const std::optional<Appcast> appcast = isWhole ? readAppcast(result.body) : std::nullopt;
    if (appcast && appcast->newest && appcast->newest->version > m_current)
        Q_EMIT updateFound(*appcast->newest);
    else if (appcast && wasAsked)
        Q_EMIT upToDate();
    else if (wasAsked)
        Q_EMIT checkFailed(result.error ? Failure::unreachable : Failure::unusableAnswer);
}

void FeedUpdater::setChecking(bool isChecking)
{
    m_isChecking = isChecking;
    Q_EMIT canCheckForUpdatesChanged(canCheckForUpdates());
}

} // namespace vormel
