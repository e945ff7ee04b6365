#pragma once

#include "text/Link.h"

#include <vector>

namespace vormel {

/// The http and https links of a text with one link per line, in their order; every other line is passed over.
[[nodiscard]] std::vector<Link> httpLinks(QStringView text);

} // namespace vormel
