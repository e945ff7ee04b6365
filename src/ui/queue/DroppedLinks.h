#pragma once

#include "text/Link.h"

#include <vector>

class QMimeData;

namespace vormel {

/// The http and https links that a drop carries, in their order: from its list of addresses, or, where that has none,
/// one per line of its text.
[[nodiscard]] std::vector<Link> droppedLinks(const QMimeData& data);

} // namespace vormel
