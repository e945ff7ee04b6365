#pragma once

#include "text/Link.h"

#include <QCoroTask>

#include <optional>
#include <stop_token>
#include <vector>

namespace vormel {

/// Reads the link containers of one service. Stateless. UI thread; resolveContainer may throw ContainerError; stopped,
/// it ends its requests at once.
class ContainerResolver
{
public:
    ContainerResolver() = default;
    ContainerResolver(const ContainerResolver&) = delete;
    ContainerResolver& operator=(const ContainerResolver&) = delete;
    virtual ~ContainerResolver() = default;

    /// The service's label.
    [[nodiscard]] virtual QString name() const = 0;
    [[nodiscard]] virtual bool canHandle(const Link& url) const = 0;
    [[nodiscard]] virtual QCoro::Task<std::vector<Link>> resolveContainer(Link url, std::optional<QString> password,
                                                                          std::stop_token stop) const = 0;
};

} // namespace vormel
