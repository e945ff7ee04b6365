#include "archive/workspace/Placement.h"

#include "archive/workspace/FreeName.h"
#include "archive/workspace/OpenFolder.h"
#include "archive/workspace/ProtectedFiles.h"
#include "archive/workspace/TreeWalk.h"
#include "archive/workspace/WorkFolder.h"
#include "platform/storage/CarefulMove.h"
#include "platform/storage/Trash.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <utility>
#include <vector>

namespace vormel {

namespace {

/// Goes through the work folder and the destination side by side, wherever a folder is in both.
class Placing
{
public:
    Placing(const WorkFolder& from, const PlacementRules& rules)
        : m_protected(rules.protectedPaths)
        , m_trash(rules.trash)
        , m_source(openFolder(from.filesHandle(), "."))
        , m_target(openFolder(from.destinationHandle(), "."))
    {
        m_paths.push_back(from.destination());
    }

    [[nodiscard]] PlacementResult run()
    {
        listHere();
        while (m_result.systemError == 0 && !m_waiting.empty()) {
            if (m_waiting.back().empty()) {
                goBack();
            } else {
                const FolderEntry entry = std::move(m_waiting.back().back());
                m_waiting.back().pop_back();
                place(entry);
            }
        }
        return std::move(m_result);
    }

private:
    void place(const FolderEntry& entry)
    {
        const bool isKept = m_protected.hasName(m_place, entry.name);
        // Others may put something there or take it away while this looks.
        constexpr int tries = 3;
        for (int i = 0; i < tries; ++i) {
            if (!isKept && moveIn(entry.name))
                return;
            const auto obstacle = factsOf(m_target.folder(), entry.name);
            if (obstacle && entry.isFolder() && S_ISDIR(obstacle->st_mode)) {
                // Nothing can be renamed into another file system that begins below the destination.
                if (obstacle->st_dev != m_place.device)
                    break;
                if (merge(entry.name))
                    return;
            } else if (isKept || (obstacle && !takeAway(entry.name, *obstacle))) {
                break;
            }
        }
        note(moveToFreeName(m_source.folder(), entry.name, m_target.folder(), entry, 1,
                            [this](const QByteArray& name) { return m_protected.hasName(m_place, name); }));
    }

    /// False if the name is taken.
    bool moveIn(const QByteArray& name)
    {
        const int error = moveWithoutReplacing(m_source.folder(), name, m_target.folder(), name);
        if (error == EEXIST)
            return false;
        note({name, error});
        return true;
    }

    bool takeAway(const QByteArray& name, const struct stat& obstacle)
    {
        return !m_protected.holds(identityOf(obstacle)) && m_trash != nullptr && m_trash->moveToTrash(pathOf(name));
    }

    /// False if the folder in the destination is gone.
    bool merge(const QByteArray& name)
    {
        if (!m_target.enter(name))
            return false;
        if (m_waiting.size() == 1)
            m_result.placed << pathOf(name);
        m_paths.push_back(pathOf(name));
        if (m_source.enter(name))
            listHere();
        else
            m_result.systemError = errno;
        return true;
    }

    void listHere()
    {
        const auto place = factsOf(m_target.folder());
        auto entries = place ? entriesOf(m_source.folder()) : std::nullopt;
        if (!entries) {
            m_result.systemError = errno;
            return;
        }
        m_place = identityOf(*place);
        std::reverse(entries->begin(), entries->end());
        m_waiting.push_back(std::move(*entries));
    }

    void goBack()
    {
        m_waiting.pop_back();
        m_paths.pop_back();
        if (m_waiting.empty())
            return;
        const auto place = m_source.leave() && m_target.leave() ? factsOf(m_target.folder()) : std::nullopt;
        if (place)
            m_place = identityOf(*place);
        else
            m_result.systemError = errno;
    }

    void note(const NewPlace& place)
    {
        if (place.systemError != 0)
            m_result.systemError = place.systemError;
        else if (m_waiting.size() == 1)
            m_result.placed << pathOf(place.name);
    }

    [[nodiscard]] QString pathOf(const QByteArray& name) const
    {
        return m_paths.back() + u'/' + QFile::decodeName(name);
    }

    ProtectedFiles m_protected;
    Trash* m_trash;
    TreeCursor m_source;
    TreeCursor m_target;
    FileIdentity m_place; ///< of the folder in the destination
    /// From the top to here: what is still to be placed, and the path in the destination.
    std::vector<std::vector<FolderEntry>> m_waiting;
    std::vector<QString> m_paths;
    PlacementResult m_result;
};

} // namespace

PlacementResult placeInto(const WorkFolder& from, const PlacementRules& rules)
{
    return Placing(from, rules).run();
}

} // namespace vormel
