#pragma once

#include "resolvers/pages/PageSession.h"

#include <QStringList>

#include <memory>

namespace vormel {

class Background;

/// What the readers of containers work with. All must outlive what they are asked for.
struct ContainerPorts
{
    HttpClient& http;
    Background& background;
    std::shared_ptr<const QStringList> knownFileHosts; ///< domains, in small letters
};

/// The container's page. Throws ContainerError.
[[nodiscard]] QCoro::Task<QString> containerPage(const PageSession& session, Link url, std::optional<QString> referer);

/// The page that answers the container's password form, which goes to the page's own address. Throws ContainerError.
[[nodiscard]] QCoro::Task<QString> postContainerPassword(const PageSession& session, Background& background, Link url,
                                                         QString html, QString password);

} // namespace vormel
