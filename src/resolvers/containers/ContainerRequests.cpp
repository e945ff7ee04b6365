#include "resolvers/containers/ContainerRequests.h"

#include "platform/async/Background.h"
#include "resolvers/ResolverError.h"
#include "resolvers/containers/ContainerForm.h"

namespace vormel {

namespace {

QString pageOf(const PageAnswer& answer)
{
    if (answer.error)
        throw ContainerError::networkError(*answer.error);
    return answer.html;
}

} // namespace

QCoro::Task<QString> containerPage(const PageSession& session, Link url, std::optional<QString> referer)
{
    const PageAnswer answer = co_await session.get(url, referer);
    co_return pageOf(answer);
}

QCoro::Task<QString> postContainerPassword(const PageSession& session, Background& background, Link url, QString html,
                                           QString password)
{
    const auto fillIn = [html, password] { return containerPasswordBody(html, password); };
    const QByteArray form = co_await background.run(fillIn);
    const PageAnswer answer = co_await session.post(url, form, url.absoluteString());
    co_return pageOf(answer);
}

} // namespace vormel
