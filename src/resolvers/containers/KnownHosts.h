#pragma once

#include "text/Link.h"

#include <QStringList>

namespace vormel {

/// Does one of the domains, in small letters, stand anywhere in the link's host? False for a link without a host.
[[nodiscard]] bool isHostAmong(const Link& url, const QStringList& domains);

/// Does the link lead to a file of a known host: over http or https, and to more than the site's root?
[[nodiscard]] bool acceptKnownHost(const Link& url, const QStringList& knownFileHosts);

} // namespace vormel
