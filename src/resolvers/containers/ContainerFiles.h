#pragma once

#include "resolvers/containers/ContainerLinks.h"
#include "resolvers/containers/ContainerRequests.h"

namespace vormel {

/// The files of a container's page that is open, which the browser of that name reads: those that the page tells, and
/// those that its /go/ links lead to. Never fails; a stop ends what is asked of the site.
[[nodiscard]] QCoro::Task<std::vector<Link>> extractContainerLinks(ContainerPorts ports, HrefScan scan, QString html,
                                                                   Link url, QLatin1StringView userAgent,
                                                                   std::stop_token stop);

} // namespace vormel
