#pragma once

#include "text/Link.h"

#include <optional>

namespace vormel {

/// Where a reference on a page leads to: an address of its own, which keeps its spelling, or one relative to the
/// page's. Nothing for what is neither, and for every scheme but http and https.
[[nodiscard]] std::optional<Link> httpTarget(const Link& page, QStringView reference);

} // namespace vormel
