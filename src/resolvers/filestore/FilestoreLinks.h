#pragma once

#include "text/Link.h"

#include <optional>

namespace vormel {

// The addresses of Filestore and those on its pages. Pure; any thread. The service's domain is handed in, since it may
// be configured anew at start: the built-in one is the linkFragment of its HostProfile.

/// Does the address lead further than to the root of a site? "https://h/a" does.
[[nodiscard]] bool hasPathBehindRoot(const Link& url);

/// The address of the file that a page shows, http or https. Kinds of links are tried one after the other: the site's
/// own "/dl/", its "/d/", any to a file with one of a few endings, data-url, and location.href with the service's word
/// in it. Of each kind only the first on the page counts, and not if it is no address or the page's own. The last two
/// kinds may be relative to the page.
[[nodiscard]] std::optional<Link> extractDirectLink(const QString& html, const Link& pageUrl, const QString& domain);

} // namespace vormel
