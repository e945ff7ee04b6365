#pragma once

#include "resolvers/containers/ContainerRequests.h"

#include <vector>

namespace vormel {

/// Asks all of a container's /go/ links at the same time where they lead, each in a session of its own, and gives the
/// files of known hosts in the order in which the answers end. A link that leads nowhere is left out.
[[nodiscard]] QCoro::Task<std::vector<Link>> followGoLinks(ContainerPorts ports, std::vector<Link> goLinks,
                                                           Link container, QLatin1StringView userAgent,
                                                           std::stop_token stop);

} // namespace vormel
