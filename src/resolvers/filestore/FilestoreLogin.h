#pragma once

#include "text/FormFields.h"
#include "text/Link.h"

namespace vormel {

// What the pages of Filestore tell of a login. Pure; any thread.

/// What is posted to sign in: the hidden inputs of the login page, and over them the login.
[[nodiscard]] FormFields loginFields(const QString& loginPage, const QString& username, const QString& password);

/// Does the answer to a login say that name or password are wrong? Its status does not.
[[nodiscard]] bool tellsRefusedLogin(const QString& html);

/// Has a request ended at a page that asks for a login?
[[nodiscard]] bool isLoginAddress(const Link& finalUrl);

/// Has the request for a file's page ended at the site's root or at a login? Then the session is not logged in. An
/// empty link, of an answer without an address, says nothing.
[[nodiscard]] bool isLoggedOutAddress(const Link& finalUrl);

} // namespace vormel
