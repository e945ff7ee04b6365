#include "sites/Request.h"

#include <algorithm>

namespace vormel::sites {

std::string_view Request::path() const
{
    const auto whole = pathAndQuery();
    return whole.substr(0, whole.find('?'));
}

std::string_view Request::pathAndQuery() const
{
    const std::string_view all = target;
    const auto scheme = all.find("://");
    if (all.starts_with('/') || scheme == std::string_view::npos)
        return all;
    const auto slash = all.find('/', scheme + 3);
    return slash == std::string_view::npos ? std::string_view("/") : all.substr(slash);
}

std::optional<std::string> Request::header(std::string_view name) const
{
    const auto found = std::find_if(headers.begin(), headers.end(),
                                    [name](const Header& header) { return sameHeaderName(header.name, name); });
    return found == headers.end() ? std::nullopt : std::optional(found->value);
}

} // namespace vormel::sites
