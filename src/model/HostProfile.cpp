#include "model/HostProfile.h"

namespace vormel {

bool isLinkOf(const HostProfile& profile, const Link& url)
{
    const QStringView host = url.host();
    return host.contains(profile.linkFragment, Qt::CaseInsensitive) ||
           host.contains(profile.domain, Qt::CaseInsensitive);
}

} // namespace vormel
