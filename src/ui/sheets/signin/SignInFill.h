#pragma once

#include <QString>

namespace vormel {

/// What the fields of a sign-in are filled with.
struct Credentials
{
    QString username;
    QString password;

    [[nodiscard]] bool areEmpty() const { return username.isEmpty() && password.isEmpty(); }
};

/// The script that fills the fields of a sign-in form at Terabytez. What stands in one already stays, and nothing is
/// submitted. Pure.
[[nodiscard]] QString fillScript(const Credentials& credentials);

} // namespace vormel
