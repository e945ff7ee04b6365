#pragma once

#include "kit/SignInSheet.h"
#include "ui/accounts/AccountTestStatus.h"

namespace vormel {

/// What the row of an account knows of it beyond its record: how its check stands, and what came of it. Never stored.
class AccountRowState
{
public:
    [[nodiscard]] const AccountTestStatus& testStatus() const { return m_testStatus; }
    /// Of the last check, if it was a success.
    [[nodiscard]] const std::optional<PremiumAccountInfo>& premiumInfo() const { return m_premiumInfo; }
    /// The host wants a browser, so the check waits for the user to sign in.
    [[nodiscard]] bool isSigningIn() const { return m_isSigningIn; }

    void checkBegan();
    void checkSucceeded(const PremiumAccountInfo& info);
    /// With a message that exists in one language only.
    void checkFailed(const QString& message);
    void signInBegan();
    void signInEnded(const SignInAnswer& answer);

private:
    void set(const AccountTestStatus& status, const std::optional<PremiumAccountInfo>& info);

    AccountTestStatus m_testStatus;
    std::optional<PremiumAccountInfo> m_premiumInfo;
    bool m_isSigningIn = false;
};

} // namespace vormel
