#include "resolvers/containers/ContainerFiles.h"

#include "platform/async/Background.h"
#include "resolvers/containers/GoLinks.h"

namespace vormel {

QCoro::Task<std::vector<Link>> extractContainerLinks(ContainerPorts ports, HrefScan scan, QString html, Link url,
                                                     QLatin1StringView userAgent, std::stop_token stop)
{
    const auto read = [html, url, scan, knownFileHosts = ports.knownFileHosts] {
        return readPageLinks(html, url, scan, *knownFileHosts);
    };
    const PageLinks page = co_await ports.background.run(read);
    const std::vector<Link> followed = co_await followGoLinks(ports, page.go, url, userAgent, stop);
    const auto join = [page, followed] { return joinedLinks(page, followed); };
    co_return co_await ports.background.run(join);
}

} // namespace vormel
