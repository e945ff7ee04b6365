#include "resolvers/filestore/FilestoreLoginCache.h"

#include "platform/async/Spawn.h"
#include "resolvers/ResolverError.h"

#include <algorithm>

namespace vormel {

FilestoreLoginCache::FilestoreLoginCache(const Clock& clock)
    : m_clock(clock)
{}

FilestoreLoginCache::~FilestoreLoginCache()
{
    for (const auto& [username, task] : m_loginTask)
        task->stop.request_stop();
}

FilestoreLoginCache::Outcome FilestoreLoginCache::cancelled()
{
    return {std::nullopt, std::make_exception_ptr(ResolverError::authenticationFailed())};
}

const FilestoreLoginCache::Session* FilestoreLoginCache::freshSession(const QString& username) const
{
    const auto entry = m_cache.find(username);
    const bool isFresh = entry != m_cache.end() && m_clock.steadyNow() - entry->second.timestamp < maxAge;
    return isFresh ? &entry->second.session : nullptr;
}

bool FilestoreLoginCache::isCurrent(const QString& username, const LoginTaskPtr& task) const
{
    const auto running = m_loginTask.find(username);
    return running != m_loginTask.end() && running->second == task;
}

QCoro::Task<FilestoreLoginCache::Session> FilestoreLoginCache::cookiesForUser(QString username, Login login,
                                                                              std::stop_token stop)
{
    if (stop.stop_requested())
        throw ResolverError::authenticationFailed();
    if (const Session* const session = freshSession(username))
        co_return *session;
    LoginTaskPtr& running = m_loginTask[username];
    const bool isFirst = !running;
    if (isFirst)
        running = std::make_shared<LoginTask>(LoginTask{++m_lastLogin, {}, {}});
    const LoginTaskPtr task = running;
    const auto waiter = std::make_shared<EventualSource<Outcome>>(cancelled());
    task->waiters.push_back(waiter);
    Eventual<Outcome> end = waiter->eventual();
    const std::stop_callback leaving(stop, [this, lifetime = m_lifetime.watch(), username, task, waiter] {
        if (!lifetime.isOver())
            leave(username, task, waiter);
    });
    if (isFirst)
        spawn(run(username, task, std::move(login)));
    const Outcome outcome = co_await end;
    if (outcome.error)
        std::rethrow_exception(outcome.error);
    co_return *outcome.session;
}

QCoro::Task<> FilestoreLoginCache::run(QString username, LoginTaskPtr task, Login login)
{
    const Lifetime::Watch lifetime = m_lifetime.watch();
    Outcome outcome;
    try {
        const QByteArrayList cookies = co_await login(task->stop.get_token());
        outcome.session = Session{cookies, task->number};
    } catch (...) {
        outcome.error = std::current_exception();
    }
    if (task->stop.stop_requested())
        outcome = cancelled();
    if (!lifetime.isOver())
        loginEnded(username, task, outcome);
    for (const Waiter& waiter : std::exchange(task->waiters, {}))
        waiter->deliver(outcome);
}

void FilestoreLoginCache::loginEnded(const QString& username, const LoginTaskPtr& task, const Outcome& outcome)
{
    if (!isCurrent(username, task))
        return;
    m_loginTask.erase(username);
    if (outcome.session)
        m_cache[username] = Entry{*outcome.session, m_clock.steadyNow()};
}

void FilestoreLoginCache::leave(const QString& username, const LoginTaskPtr& task, const Waiter& waiter)
{
    if (std::erase(task->waiters, waiter) == 0)
        return;
    if (task->waiters.empty()) {
        if (isCurrent(username, task))
            m_loginTask.erase(username);
        task->stop.request_stop();
    }
    // Not from inside the stop, whose caller is in the middle of something.
    QMetaObject::invokeMethod(
        &m_later, [waiter] { waiter->deliver(cancelled()); }, Qt::QueuedConnection);
}

void FilestoreLoginCache::invalidateUser(const QString& username)
{
    if (const LoginTaskPtr task = forgetUser(username))
        task->stop.request_stop();
}

FilestoreLoginCache::LoginTaskPtr FilestoreLoginCache::forgetUser(const QString& username)
{
    m_cache.erase(username);
    auto running = m_loginTask.extract(username);
    return running ? running.mapped() : nullptr;
}

void FilestoreLoginCache::credentialsChanged(const QString& username)
{
    (void)forgetUser(username);
}

void FilestoreLoginCache::invalidateLogin(const QString& username, quint64 login)
{
    const auto entry = m_cache.find(username);
    if (entry != m_cache.end() && entry->second.session.login == login)
        m_cache.erase(entry);
}

} // namespace vormel
