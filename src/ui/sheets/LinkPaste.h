#pragma once

#include "model/PendingQuestions.h"

#include <vector>

namespace vormel {

class HostProfiles;
class ResolverTables;

/// What a pasted text amounts to. A value without state behind it.
class LinkPaste
{
public:
    LinkPaste() = default;
    LinkPaste(QStringView text, const ResolverTables& resolvers);

    /// All links in the order of the text; duplicates stay, as the queue sorts those out.
    [[nodiscard]] const std::vector<Link>& validURLs() const { return m_valid; }
    [[nodiscard]] const std::vector<Link>& containerURLs() const { return m_containers; }
    [[nodiscard]] const std::vector<Link>& directURLs() const { return m_direct; }

    /// The direct links by their host, the best known hosts first.
    [[nodiscard]] std::vector<PendingHostSelection::HostGroup> hostGroups(const HostProfiles& profiles) const;

private:
    std::vector<Link> m_valid;
    std::vector<Link> m_containers;
    std::vector<Link> m_direct;
};

} // namespace vormel
