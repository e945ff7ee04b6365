#pragma once

#include "text/Link.h"

#include <vector>

class QMimeData;

namespace vormel {

/// Is it addresses or text? What is in them shows when they are dropped.
[[nodiscard]] bool mayHoldLinks(const QMimeData& data);

/// The http and https links that a drop carries, as they are added: each address of its list by itself, or, where that
/// has none, those of its text together, one per line.
[[nodiscard]] std::vector<std::vector<Link>> droppedLinks(const QMimeData& data);

} // namespace vormel
