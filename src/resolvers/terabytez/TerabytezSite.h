#pragma once

#include "text/Link.h"

namespace vormel {

/// Where Terabytez is. A value; any thread.
struct TerabytezSite
{
    QString domain; ///< may be configured anew at start

    /// Is this host, in small letters, or this domain of a cookie the service's? It is by the word for the service or
    /// by the configured domain, which need not have that word in it.
    [[nodiscard]] bool owns(QStringView host) const;

    [[nodiscard]] Link rootUrl() const;
    [[nodiscard]] Link loginUrl() const;
    [[nodiscard]] Link accountUrl() const;
};

} // namespace vormel
