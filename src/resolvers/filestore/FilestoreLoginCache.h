#pragma once

#include "platform/async/Eventual.h"
#include "platform/async/Lifetime.h"
#include "platform/clock/Clock.h"

#include <QByteArrayList>
#include <QCoroTask>
#include <QObject>

#include <exception>
#include <functional>
#include <optional>
#include <stop_token>
#include <unordered_map>
#include <vector>

namespace vormel {

/// Keeps the cookies of a good login for a short time; who asks while a login of the same user is under way waits for
/// that one. In memory only. UI thread only.
class FilestoreLoginCache
{
public:
    struct Session
    {
        QByteArrayList cookies; ///< as CookieStore has them
        quint64 login = 0;      ///< which one they come from
    };
    /// Gives the cookies of a new session, or throws. Ends soon after a stop.
    using Login = std::function<QCoro::Task<QByteArrayList>(std::stop_token stop)>;

    static constexpr std::chrono::seconds maxAge{240};

    /// The clock must outlive this.
    explicit FilestoreLoginCache(const Clock& clock);
    FilestoreLoginCache(const FilestoreLoginCache&) = delete;
    FilestoreLoginCache& operator=(const FilestoreLoginCache&) = delete;
    /// Stops what is under way.
    ~FilestoreLoginCache();

    /// Throws what the login throws. A stop ends this waiting, a turn later, and the login only if nobody else waits
    /// for it.
    [[nodiscard]] QCoro::Task<Session> cookiesForUser(QString username, Login login, std::stop_token stop = {});

    /// Forgets the user's login, and stops one that is under way: all who wait for it fail.
    void invalidateUser(const QString& username);
    /// Whoever asks from now on logs in anew. Those who wait for a login under way get that one: it may well be good.
    void credentialsChanged(const QString& username);
    /// Forgets a login that has turned out to be no good. One that has begun since stays.
    void invalidateLogin(const QString& username, quint64 login);

private:
    struct Outcome
    {
        std::optional<Session> session;
        std::exception_ptr error;
    };
    struct Entry
    {
        Session session;
        SteadyTime timestamp;
    };
    using Waiter = std::shared_ptr<EventualSource<Outcome>>;
    struct LoginTask
    {
        quint64 number = 0;
        std::stop_source stop;
        std::vector<Waiter> waiters;
    };
    using LoginTaskPtr = std::shared_ptr<LoginTask>;

    [[nodiscard]] static Outcome cancelled();
    [[nodiscard]] const Session* freshSession(const QString& username) const;
    [[nodiscard]] bool isCurrent(const QString& username, const LoginTaskPtr& task) const;
    [[nodiscard]] QCoro::Task<> run(QString username, LoginTaskPtr task, Login login);
    LoginTaskPtr forgetUser(const QString& username);
    void loginEnded(const QString& username, const LoginTaskPtr& task, const Outcome& outcome);
    void leave(const QString& username, const LoginTaskPtr& task, const Waiter& waiter);

    const Clock& m_clock;
    std::unordered_map<QString, Entry> m_cache;
    std::unordered_map<QString, LoginTaskPtr> m_loginTask;
    quint64 m_lastLogin = 0;
    QObject m_later; ///< context of what is posted
    Lifetime m_lifetime;
};

} // namespace vormel
