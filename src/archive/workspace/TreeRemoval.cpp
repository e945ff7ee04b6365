#include "archive/workspace/TreeRemoval.h"

#include "archive/workspace/OpenFolder.h"
#include "archive/workspace/TreeWalk.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace vormel {

namespace {

class Remover final : public TreeVisitor
{
public:
    std::vector<QByteArray> arrive(int folder, const QByteArray&) override
    {
        std::vector<QByteArray> folders;
        const auto entries = entriesOf(folder);
        if (!entries)
            return folders;
        for (const FolderEntry& entry : *entries) {
            if (!entry.isFolder())
                ::unlinkat(folder, entry.name.constData(), 0);
            else if (giveOwnerAccess(folder, entry.name))
                folders.push_back(entry.name);
        }
        return folders;
    }

    void comeBack(int folder, const QByteArray& name) override { ::unlinkat(folder, name.constData(), AT_REMOVEDIR); }
};

} // namespace

bool removeTree(int parent, const QByteArray& name)
{
    // A tool that was killed may finish its last call while this runs.
    constexpr int tries = 3;
    for (int i = 0; i < tries; ++i) {
        FileDescriptor top = openFolder(parent, name);
        if (!top.isOpen())
            return errno == ENOENT;
        static_cast<void>(giveOwnerAccess(parent, name));
        Remover remover;
        static_cast<void>(walkTree(std::move(top), remover));
        if (::unlinkat(parent, name.constData(), AT_REMOVEDIR) == 0)
            return true;
    }
    return false;
}

} // namespace vormel
