#pragma once

#include "platform/web/CookieLine.h"

#include <QNetworkCookie>
#include <QUrl>

namespace vormel {

// Cookies of the engine as lines, and back.

[[nodiscard]] CookieLine lineOf(const QNetworkCookie& cookie);
/// Without a domain if it is the cookie of one host: the engine takes any domain for one with all its subdomains.
[[nodiscard]] QNetworkCookie cookieOf(const CookieLine& line);
/// An address that the cookie could have come from.
[[nodiscard]] QUrl originOf(const CookieLine& line);

} // namespace vormel
