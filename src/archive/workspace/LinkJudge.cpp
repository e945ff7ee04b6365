#include "archive/workspace/LinkJudge.h"

#include <algorithm>
#include <cstddef>

namespace vormel {

int LinkJudge::addFolder(int parent, const QByteArray& name)
{
    const int number = static_cast<int>(m_parents.size());
    m_parents.push_back(parent);
    if (number > 0)
        m_folders.insert({parent, name}, number);
    return number;
}

void LinkJudge::addLink(int folder, const QByteArray& name, const QByteArray& target)
{
    m_linkIndexes.insert({folder, name}, m_links.size());
    m_links.push_back({{folder, name}, target});
}

std::vector<LinkJudge::Link> LinkJudge::leadingOut()
{
    std::vector<Link> found;
    for (Judged& link : m_links)
        if (!follow(link, 0))
            found.push_back(link.place);
    return found;
}

LinkJudge::End LinkJudge::follow(Judged& link, int depth)
{
    // No system follows more links than that for one path.
    constexpr int maxLinks = 40;
    if (link.state == State::inside)
        return link.end;
    if (link.state != State::open || depth > maxLinks)
        return std::nullopt;
    link.state = State::inWork;
    const End end = walk(link, depth);
    link.state = end ? State::inside : State::out;
    link.end = end.value_or(noFolder);
    return end;
}

LinkJudge::End LinkJudge::walk(const Judged& link, int depth)
{
    // No archive knows where it is unpacked, so an absolute target is never meant to be inside.
    if (link.target.isEmpty() || link.target.startsWith('/'))
        return std::nullopt;
    int at = link.place.folder;
    bool wentDown = false;
    for (const QByteArray& part : link.target.split('/')) {
        if (part.isEmpty() || part == ".")
            continue;
        if (part != "..") {
            wentDown = true;
            const End end = goDown(at, part, depth);
            if (!end)
                return std::nullopt;
            at = *end;
        } else if (wentDown || at == 0) {
            return std::nullopt;
        } else {
            at = m_parents[static_cast<std::size_t>(at)];
        }
    }
    return at;
}

LinkJudge::End LinkJudge::goDown(int folder, const QByteArray& name, int depth)
{
    const std::pair<int, QByteArray> place{folder, name};
    const auto link = m_linkIndexes.constFind(place);
    if (link != m_linkIndexes.constEnd())
        return follow(m_links[*link], depth + 1);
    return m_folders.value(place, noFolder);
}

} // namespace vormel
