#pragma once

#include "model/HostProfile.h"
#include "model/PremiumAccountInfo.h"

#include <QCoroTask>
#include <QPointer>
#include <QWidget>

#include <optional>
#include <stop_token>

namespace vormel {

/// Where a user is to sign in, and what the fields there are filled with.
struct SignInRequest
{
    SupportedHost host = SupportedHost::filestore;
    QString username;
    QString password;         ///< empty where none is stored
    QPointer<QWidget> parent; ///< what the sheet opens above
};

/// How a sign-in ended.
struct SignInAnswer
{
    bool isSignedIn = false;                ///< else it was cancelled
    std::optional<PremiumAccountInfo> info; ///< of the account, if it could be read
};

/// Lets the user sign in to a host that takes nobody in without a browser. UI thread only.
class SignInSheet
{
public:
    SignInSheet() = default;
    SignInSheet(const SignInSheet&) = delete;
    SignInSheet& operator=(const SignInSheet&) = delete;
    virtual ~SignInSheet() = default;

    /// Opens a sheet, also while one for another account is open. Throws nothing; a stop closes the sheet, and counts
    /// as cancelling.
    [[nodiscard]] virtual QCoro::Task<SignInAnswer> open(SignInRequest request, std::stop_token stop) = 0;
};

} // namespace vormel
