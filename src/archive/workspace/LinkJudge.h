#pragma once

#include <QByteArray>
#include <QHash>

#include <optional>
#include <utility>
#include <vector>

namespace vormel {

/// Tells which symbolic links of a tree lead out of it, by what was told of its folders and links alone. All are judged
/// while all are there, as one may lead through another. What stands behind a name may become another link one day, and
/// going up from there could end anywhere, so a target may go up only before it goes down.
class LinkJudge
{
public:
    /// Gives the number of the folder; the first one is the top, whose parent does not count.
    int addFolder(int parent, const QByteArray& name);
    void addLink(int folder, const QByteArray& name, const QByteArray& target);

    struct Link
    {
        int folder = 0;
        QByteArray name;
    };
    /// The links that are absolute, go up too far, go round in circles or lead through such a link.
    [[nodiscard]] std::vector<Link> leadingOut();

private:
    /// Where a path ends: a folder, or something inside the tree that is none.
    using End = std::optional<int>;
    static constexpr int noFolder = -1;

    enum class State
    {
        open,
        inWork,
        inside,
        out,
    };
    struct Judged
    {
        Link place;
        QByteArray target;
        State state = State::open;
        int end = noFolder;
    };

    [[nodiscard]] End follow(Judged& link, int depth);
    [[nodiscard]] End walk(const Judged& link, int depth);
    [[nodiscard]] End goDown(int folder, const QByteArray& name, int depth);

    std::vector<int> m_parents;
    QHash<std::pair<int, QByteArray>, int> m_folders;
    QHash<std::pair<int, QByteArray>, std::size_t> m_linkIndexes;
    std::vector<Judged> m_links;
};

} // namespace vormel
