#pragma once

#include "text/BoundedRegex.h"
#include "text/Link.h"

#include <QStringList>

#include <memory>
#include <optional>

namespace vormel {

struct Services;

/// Knows the files of known hosts, to which the pages of a container lead. Never changes; any thread.
class LinkTargets
{
public:
    explicit LinkTargets(const Services& services);

    [[nodiscard]] bool isTarget(const Link& url) const;
    /// The file that a page leads to by a refresh, by a script, or by a link, in this order; by https. Of each kind the
    /// page's first counts.
    [[nodiscard]] std::optional<Link> scanPageForTarget(const QString& html) const;

    [[nodiscard]] const std::shared_ptr<const QStringList>& knownFileHosts() const { return m_knownFileHosts; }

private:
    [[nodiscard]] std::optional<Link> targetIn(QStringView address) const;

    std::shared_ptr<const QStringList> m_knownFileHosts;
    BoundedRegex m_href;
};

} // namespace vormel
