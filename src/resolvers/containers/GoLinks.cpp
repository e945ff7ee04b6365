#include "resolvers/containers/GoLinks.h"

#include "platform/async/Eventual.h"
#include "platform/async/Spawn.h"
#include "resolvers/containers/ContainerLinks.h"
#include "resolvers/containers/KnownHosts.h"

namespace vormel {

namespace {

/// Where the results of links that are followed side by side come together.
struct Gathering
{
    std::vector<Link> links;
    std::size_t left = 0;
    EventualSource<std::vector<Link>> all{{}};
};

QCoro::Task<std::optional<Link>> followGoLink(ContainerPorts ports, Link goLink, Link container,
                                              QLatin1StringView userAgent, std::stop_token stop)
{
    const PageSession session(ports.http, userAgent, std::move(stop), [](const QUrl&) { return false; });
    const PageAnswer answer = co_await session.get(goLink, container.absoluteString());
    // A redirect counts only where its answer breaks off; one that came whole is judged by its own address.
    std::optional<Link> candidate = answer.url;
    if (answer.error)
        candidate = answer.refused ? std::optional(upgradeToHTTPS(*answer.refused)) : std::nullopt;
    const bool isFile = candidate && acceptKnownHost(*candidate, *ports.knownFileHosts);
    co_return isFile ? candidate : std::nullopt;
}

QCoro::Task<> gather(std::shared_ptr<Gathering> gathering, QCoro::Task<std::optional<Link>> following)
{
    const std::optional<Link> link = co_await following;
    if (link)
        gathering->links.push_back(*link);
    if (--gathering->left == 0)
        gathering->all.deliver(gathering->links);
}

} // namespace

QCoro::Task<std::vector<Link>> followGoLinks(ContainerPorts ports, std::vector<Link> goLinks, Link container,
                                             QLatin1StringView userAgent, std::stop_token stop)
{
    if (goLinks.empty())
        co_return std::vector<Link>();
    const auto gathering = std::make_shared<Gathering>();
    gathering->left = goLinks.size();
    Eventual<std::vector<Link>> all = gathering->all.eventual();
    for (const Link& goLink : goLinks)
        spawn(gather(gathering, followGoLink(ports, goLink, container, userAgent, stop)));
    co_return co_await all;
}

} // namespace vormel
