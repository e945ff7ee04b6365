#include "archive/workspace/TreeWalk.h"

#include <cerrno>
#include <utility>

namespace vormel {

TreeCursor::TreeCursor(FileDescriptor top)
    : m_folder(std::move(top))
{}

bool TreeCursor::enter(const QByteArray& name)
{
    const auto here = factsOf(m_folder.get());
    FileDescriptor below = here ? openFolder(m_folder.get(), name) : FileDescriptor();
    // Nobody can go back from a folder that is closed to him.
    if (!below.isOpen() || !factsOf(below.get(), ".."))
        return false;
    m_above.push_back(identityOf(*here));
    m_folder = std::move(below);
    return true;
}

bool TreeCursor::leave()
{
    FileDescriptor above = openFolder(m_folder.get(), "..");
    const auto facts = above.isOpen() ? factsOf(above.get()) : std::nullopt;
    if (!facts)
        return false;
    if (identityOf(*facts) != m_above.back()) {
        errno = ESTALE;
        return false;
    }
    m_above.pop_back();
    m_folder = std::move(above);
    return true;
}

int walkTree(FileDescriptor top, TreeVisitor& visitor)
{
    TreeCursor cursor(std::move(top));
    int error = 0;
    std::vector<QByteArray> path;
    std::vector<std::vector<QByteArray>> waiting{visitor.arrive(cursor.folder(), {})};
    while (true) {
        if (!waiting.back().empty()) {
            QByteArray name = std::move(waiting.back().back());
            waiting.back().pop_back();
            if (cursor.enter(name)) {
                waiting.push_back(visitor.arrive(cursor.folder(), name));
                path.push_back(std::move(name));
            } else if (error == 0) {
                error = errno;
            }
        } else if (path.empty()) {
            return error;
        } else {
            if (!cursor.leave())
                return errno;
            waiting.pop_back();
            visitor.comeBack(cursor.folder(), path.back());
            path.pop_back();
        }
    }
}

} // namespace vormel
