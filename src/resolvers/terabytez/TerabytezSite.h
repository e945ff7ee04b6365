#pragma once

#include "text/Link.h"

namespace vormel {

/// Where the pages of Terabytez are. A value; any thread.
struct TerabytezSite
{
    QString domain; ///< may be configured anew at start

    [[nodiscard]] Link rootUrl() const;
    [[nodiscard]] Link loginUrl() const;
    [[nodiscard]] Link accountUrl() const;
};

} // namespace vormel
