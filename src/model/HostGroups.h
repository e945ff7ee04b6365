#pragma once

#include "model/HostProfiles.h"
#include "model/PendingQuestions.h"

namespace vormel {

/// Under which name a link's host stands in a choice of hosts: the display name of a premium host, else the host in
/// small letters without a leading "www."; "unknown" without a host.
[[nodiscard]] QString hostGroupLabel(const Link& url, const HostProfiles& profiles);

/// The host in small letters without a leading "www."; "unknown" without a host.
[[nodiscard]] QString plainHost(const Link& url);

/// The rank of the premium host that is named; all others come behind those.
[[nodiscard]] int hostSortRank(QStringView name, const HostProfiles& profiles);

/// The links by group label, each group in the order of the links; groups by rank, then by name.
[[nodiscard]] std::vector<PendingHostSelection::HostGroup> groupURLsByHost(const std::vector<Link>& urls,
                                                                           const HostProfiles& profiles);

/// Puts groups into the order of rank and, within a rank, of their names letter by letter.
void sortHostGroups(std::vector<PendingHostSelection::HostGroup>& groups, const HostProfiles& profiles);

} // namespace vormel
