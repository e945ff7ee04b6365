#include "resolvers/HostResolver.h"

namespace vormel {

QCoro::Task<std::optional<QString>> HostResolver::fetchFilename(Link url, HostAccount account,
                                                                std::stop_token stop) const
{
    ResolvedDownload found = co_await resolveDownload(std::move(url), std::move(account), std::move(stop));
    QString name = found.url.lastPathComponent();
    if (name.contains(u'.'))
        co_return std::optional<QString>(std::move(name));
    co_return std::move(found.filename);
}

QCoro::Task<> HostResolver::prepareTransfer(std::stop_token /*stop*/) const
{
    co_return;
}

} // namespace vormel
