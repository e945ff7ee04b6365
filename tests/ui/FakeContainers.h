#pragma once

#include "resolvers/ResolverTables.h"

namespace vormel::fixtures {

/// Claims the links of hosts that have "container" in their name, and opens none.
class FakeContainers final : public ContainerResolver
{
public:
    [[nodiscard]] QString name() const override { return QStringLiteral("Fake"); }
    [[nodiscard]] bool canHandle(const Link& url) const override { return url.host().contains(u"container"); }
    [[nodiscard]] QCoro::Task<std::vector<Link>> resolveContainer(Link /*url*/,
                                                                  std::optional<QString> /*password*/) const override
    {
        co_return {};
    }
};

[[nodiscard]] inline ResolverTables containerTables()
{
    std::vector<std::unique_ptr<ContainerResolver>> containers;
    containers.push_back(std::make_unique<FakeContainers>());
    return ResolverTables({}, std::move(containers));
}

} // namespace vormel::fixtures
