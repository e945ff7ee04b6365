#pragma once

#include "text/Link.h"

#include <QStringList>

#include <optional>
#include <vector>

namespace vormel {

/// The links of known hosts in the page's href attributes; each once, as it is written. Double quotes only.
[[nodiscard]] std::vector<Link> extractKeeplinksHrefs(const QString& html, const QStringList& knownFileHosts);

/// Where the page at that address sends its reader by itself. Nothing but http and https.
[[nodiscard]] std::optional<Link> followMetaRefresh(const QString& html, const Link& url);

} // namespace vormel
