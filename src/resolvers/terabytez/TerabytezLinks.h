#pragma once

#include "resolvers/terabytez/TerabytezSite.h"

#include <optional>

namespace vormel {

// What addresses of Terabytez are. Pure; any thread.

/// Is this the address of a file? It is below "/d/" at any host of the service, at a numbered file server of anybody,
/// or has a file's ending at a host of the service that its pages are not on.
[[nodiscard]] bool isDownloadURL(const Link& url, const TerabytezSite& site);

/// Where the service sends whoever is not signed in.
[[nodiscard]] bool isLoginPage(const Link& url);

/// The first address of a file anywhere in the page, else the first that a script sends the browser to.
[[nodiscard]] std::optional<Link> extractDownloadLink(const QString& html, const TerabytezSite& site);

} // namespace vormel
