#pragma once

#include "resolvers/HostResolver.h"

namespace vormel {

/// What a walk from a file's page has come to.
struct TerabytezResolveResult
{
    enum class Kind
    {
        resolved,
        needsLogin, ///< the site asked for a login
        failed,     ///< no address was found
    };

    Kind kind = Kind::failed;
    ResolvedDownload download = {}; ///< where it is resolved
};

} // namespace vormel
