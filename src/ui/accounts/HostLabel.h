#pragma once

#include "model/HostProfile.h"

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
[[nodiscard]] inline std::vector<HostLabel> hostLabels()
{
    std::vector<HostLabel> labels;
    for (const SupportedHost host : {SupportedHost::filestore, SupportedHost::terabytez})
        labels.push_back({host, profileOf(host).domain});
    return labels;
}

} // namespace vormel
