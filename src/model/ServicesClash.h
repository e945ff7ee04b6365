#pragma once

#include "model/Services.h"
#include "model/ServicesProblem.h"

#include <QHash>

#include <optional>
#include <vector>

namespace vormel {

/// Where the values of each key stand in a file; nothing of what it does not tell.
using ServicesLines = QHash<QString, std::vector<int>>;

/// What is wrong between values of which each is well formed: a link goes to the service that finds a domain of its own
/// in the link's host, so none may find another's there. Of two such values the one that stands last is to blame.
[[nodiscard]] std::optional<ServicesProblem> clashAmong(const Services& services, const ServicesLines& lines);

} // namespace vormel
