#pragma once

#include "model/HostProfiles.h"
#include "model/PendingQuestions.h"

namespace vormel {

/// What is to become of the links that were found.
struct CaptchaChoice
{
    std::vector<Link> urls;                              ///< to be added; all links where the user has to choose
    std::vector<PendingHostSelection::HostGroup> groups; ///< to choose from; none where nothing has to be chosen
};

/// Links of hosts with an account are taken, and the others then dropped. Where there are none, it is for the user to
/// choose, unless all links are of one host. Hosts count as they are written but for letter case. Pure.
[[nodiscard]] CaptchaChoice chooseLinks(const std::vector<Link>& urls, const std::vector<SupportedHost>& accountHosts,
                                        const HostProfiles& profiles);

} // namespace vormel
