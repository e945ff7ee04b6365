#pragma once

#include "app/update/Appcast.h"
#include "app/update/Updater.h"
#include "platform/async/Lifetime.h"
#include "platform/clock/Clock.h"

#include <QCoroTask>

namespace vormel {

class HttpClient;
class UserDefaults;
struct FetchResult;

/// Compares this version with those of a feed, which is fetched over https only, redirects included. Looks by itself
/// once a day while the program runs, counted from the last time it looked, then or by hand. UI thread only; client,
/// preferences and clock must outlive it.
class FeedUpdater final : public Updater
{
    Q_OBJECT

public:
    enum class Failure
    {
        unreachable,
        unusableAnswer,
    };
    Q_ENUM(Failure)

    /// Begins by itself. Without an https address in `feed` it never looks and nothing is ever sent.
    FeedUpdater(HttpClient& client, UserDefaults& defaults, Clock& clock, const QUrl& feed, Version current);
    ~FeedUpdater() override;

    [[nodiscard]] bool canCheckForUpdates() const override;
    void checkForUpdates() override;

    [[nodiscard]] const Version& currentVersion() const { return m_current; }

Q_SIGNALS:
    void updateFound(const vormel::AppcastItem& update);
    /// Only where the user asked, as is the next.
    void upToDate();
    void checkFailed(vormel::FeedUpdater::Failure failure);

private:
    enum class Reason
    {
        byItself,
        userAsked,
    };

    [[nodiscard]] bool hasFeed() const;
    void planNextCheck();
    void startCheck(Reason reason);
    QCoro::Task<> check(Reason reason);
    void judge(const FetchResult& result, Reason reason);
    void setChecking(bool isChecking);

    HttpClient& m_client;
    UserDefaults& m_defaults;
    Clock& m_clock;
    QUrl m_feed;
    Version m_current;
    bool m_isChecking = false;
    Timer m_nextCheck;
    Lifetime m_lifetime;
};

} // namespace vormel
