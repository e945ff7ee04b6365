#pragma once

#include <QLatin1StringView>

namespace vormel {

/// What the service's pages call it, whatever domain it has moved to.
inline constexpr QLatin1StringView filestoreWord{"filestore"};

} // namespace vormel
