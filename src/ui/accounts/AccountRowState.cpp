#include "ui/accounts/AccountRowState.h"

namespace vormel {

void AccountRowState::checkBegan()
{
    set(AccountTestStatus::testing, std::nullopt);
}

void AccountRowState::checkSucceeded(const PremiumAccountInfo& info)
{
    set(AccountTestStatus::success, info);
}

void AccountRowState::checkFailed(const QString& message)
{
    set(AccountTestStatus::failure(message), std::nullopt);
}

void AccountRowState::signInBegan()
{
    m_isSigningIn = true;
}

void AccountRowState::signInEnded(const SignInAnswer& answer)
{
    constexpr TextPair unreadable{u"Couldn't read account — try Check again",
                                  u"Impossibile leggere l'account — riprova Verifica"};
    constexpr TextPair cancelled{u"Sign-in cancelled", u"Accesso annullato"};
    if (!answer.isSignedIn)
        set(AccountTestStatus::failure(cancelled), std::nullopt);
    else if (!answer.info)
        set(AccountTestStatus::failure(unreadable), std::nullopt);
    else
        set(AccountTestStatus::success, answer.info);
}

void AccountRowState::set(const AccountTestStatus& status, const std::optional<PremiumAccountInfo>& info)
{
    m_isSigningIn = false;
    m_testStatus = status;
    m_premiumInfo = info;
}

} // namespace vormel
