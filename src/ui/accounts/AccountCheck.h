#pragma once

#include "model/HostAccount.h"
#include "platform/async/Lifetime.h"
#include "ui/accounts/AccountRowState.h"

#include <QObject>

#include <stop_token>

namespace vormel {

class DownloadManager;

/// Checks one account whenever it is asked to, and knows how that stands. Its end stops a check that is under way. The
/// ports must outlive it.
class AccountCheck final : public QObject
{
    Q_OBJECT

public:
    struct Ports
    {
        DownloadManager& manager;
        SignInSheet& signIn;
    };

    /// The sheet of a sign-in opens above the parent.
    AccountCheck(const Ports& ports, HostAccount account, QWidget* parent);
    ~AccountCheck() override;

    [[nodiscard]] const AccountRowState& state() const { return m_state; }
    /// Nothing while one is under way.
    void run();
    /// The account is signed out, so what a check told holds no more. One that is under way goes on.
    void forget();

Q_SIGNALS:
    void changed();

private:
    [[nodiscard]] QCoro::Task<> check(std::stop_token stop, Lifetime::Watch lifetime);
    [[nodiscard]] QCoro::Task<> signIn(std::stop_token stop, Lifetime::Watch lifetime);

    Ports m_ports;
    HostAccount m_account;
    QWidget* m_parent;
    AccountRowState m_state;
    std::stop_source m_stop;
    Lifetime m_lifetime;
};

} // namespace vormel
