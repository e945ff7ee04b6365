#pragma once

#include "text/Link.h"

namespace vormel {

/// The premium file hosts.
enum class SupportedHost
{
    filestore,
    terabytez,
};

/// All that is peculiar to one premium host, but for the walk through its pages: a new host is a row of these and a
/// resolver.
struct HostProfile
{
    SupportedHost host = SupportedHost::filestore;
    QString key;                 ///< what is stored
    QString label;               ///< what is shown
    QString domain;              ///< of its web site
    QString linkFragment;        ///< the host of its links has this in it, or the domain
    QString groupFragment;       ///< a host with this or the domain in it stands under the label in a choice of hosts
    QString certificateFragment; ///< a host with this in it may have any certificate
    int rank = 0;                ///< its place in a choice of hosts
    bool looksUpNames = false;   ///< else names come from its web session alone
    bool signsInInBrowser = false;
};

[[nodiscard]] bool isLinkOf(const HostProfile& profile, const Link& url);

} // namespace vormel
