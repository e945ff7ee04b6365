#pragma once

#include "model/HostProfiles.h"

#include <QString>

#include <vector>

namespace vormel {

/// A host as the page of the accounts names it.
struct HostLabel
{
    SupportedHost host = SupportedHost::filestore;
    QString text; ///< the domain of its web site
};

/// Of every host, in the order in which they are offered.
[[nodiscard]] inline std::vector<HostLabel> hostLabels(const HostProfiles& profiles)
{
    std::vector<HostLabel> labels;
    for (const SupportedHost host : {SupportedHost::filestore, SupportedHost::terabytez})
        labels.push_back({host, profiles.of(host).domain});
    return labels;
}

} // namespace vormel
