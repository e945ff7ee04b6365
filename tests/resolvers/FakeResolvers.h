#pragma once

#include "resolvers/ContainerResolver.h"
#include "resolvers/HostResolver.h"
#include "resolvers/ResolverError.h"

namespace vormel {

/// Answers every link with what it was given, or with an error.
class FakeHostResolver final : public HostResolver
{
public:
    explicit FakeHostResolver(SupportedHost host, std::optional<ResolvedDownload> answer = std::nullopt)
        : m_host(host)
        , m_answer(std::move(answer))
    {}

    [[nodiscard]] SupportedHost supportedHost() const override { return m_host; }
    [[nodiscard]] QCoro::Task<ResolvedDownload> resolveDownload(Link /*url*/, HostAccount /*account*/) const override
    {
        if (!m_answer)
            throw ResolverError::linkNotFound();
        co_return *m_answer;
    }

private:
    SupportedHost m_host;
    std::optional<ResolvedDownload> m_answer;
};

/// Claims the links that contain a text.
class FakeContainerResolver final : public ContainerResolver
{
public:
    explicit FakeContainerResolver(QString claimed)
        : m_claimed(std::move(claimed))
    {}

    [[nodiscard]] QString name() const override { return m_claimed; }
    [[nodiscard]] bool canHandle(const Link& url) const override { return url.absoluteString().contains(m_claimed); }
    [[nodiscard]] QCoro::Task<std::vector<Link>> resolveContainer(Link url, std::optional<QString>) const override
    {
        co_return std::vector<Link>{std::move(url)};
    }

private:
    QString m_claimed;
};

} // namespace vormel
