#include "ui/accounts/AccountCheck.h"

#include "engine/DownloadManager.h"
#include "platform/async/Spawn.h"
#include "resolvers/ResolverError.h"

namespace vormel {

AccountCheck::AccountCheck(const Ports& ports, HostAccount account, QWidget* parent)
    : QObject(parent)
    , m_ports(ports)
    , m_account(std::move(account))
    , m_parent(parent)
{}

/// Who goes on because of the stop changes nothing that anybody looks at any more.
AccountCheck::~AccountCheck()
{
    blockSignals(true);
    m_stop.request_stop();
}

void AccountCheck::run()
{
    if (m_state.testStatus() == AccountTestStatus::testing)
        return;
    m_state.checkBegan();
    Q_EMIT changed();
    spawn(check(m_stop.get_token(), m_lifetime.watch()));
}

void AccountCheck::forget()
{
    if (m_state.testStatus() == AccountTestStatus::testing)
        return;
    m_state = AccountRowState();
    Q_EMIT changed();
}

QCoro::Task<> AccountCheck::check(std::stop_token stop, Lifetime::Watch lifetime)
{
    std::optional<PremiumAccountInfo> info;
    bool needsSignIn = false;
    QString failure;
    try {
        info = co_await m_ports.manager.checkAccount(m_account, stop);
    } catch (const ResolverError& error) {
        needsSignIn = error.kind() == ResolverError::Kind::loginRequired;
        failure = error.errorDescription();
    } catch (const std::exception& error) {
        failure = QString::fromUtf8(error.what());
    }
    if (lifetime.isOver())
        co_return;
    if (needsSignIn) {
        co_await signIn(stop, lifetime);
        co_return;
    }
    if (info)
        m_state.checkSucceeded(*info);
    else
        m_state.checkFailed(failure);
    Q_EMIT changed();
}

QCoro::Task<> AccountCheck::signIn(std::stop_token stop, Lifetime::Watch lifetime)
{
    m_state.signInBegan();
    Q_EMIT changed();
    SignInRequest request{m_account.host, m_account.username, {}, m_parent};
    request.password = co_await m_ports.manager.accounts().loadPassword(m_account);
    if (lifetime.isOver())
        co_return;
    const SignInAnswer answer = co_await m_ports.signIn.open(request, stop);
    if (lifetime.isOver())
        co_return;
    m_state.signInEnded(answer);
    Q_EMIT changed();
}

} // namespace vormel
