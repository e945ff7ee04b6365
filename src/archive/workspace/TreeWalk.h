#pragma once

#include "archive/workspace/OpenFolder.h"
#include "platform/storage/FileDescriptor.h"

#include <QByteArray>

#include <vector>

namespace vormel {

/// One folder of a tree at a time. However deep the tree is, this takes one descriptor and no path.
class TreeCursor
{
public:
    explicit TreeCursor(FileDescriptor top);

    /// Open for work below it, not for listing.
    [[nodiscard]] int folder() const { return m_folder.get(); }
    /// Goes into a folder, not through a link. Otherwise it stays, and errno says why.
    [[nodiscard]] bool enter(const QByteArray& name);
    /// Goes back. False, and nothing more can be done, if the folder was moved elsewhere meanwhile.
    [[nodiscard]] bool leave();

private:
    FileDescriptor m_folder;
    std::vector<FileIdentity> m_above;
};

/// Whoever has something to do in each folder of a tree.
class TreeVisitor
{
public:
    TreeVisitor() = default;
    TreeVisitor(const TreeVisitor&) = delete;
    TreeVisitor& operator=(const TreeVisitor&) = delete;
    virtual ~TreeVisitor() = default;

    /// In a folder; its name is empty at the top. Gives the names of the folders in it to go on with.
    [[nodiscard]] virtual std::vector<QByteArray> arrive(int folder, const QByteArray& name) = 0;
    /// Back in a folder, from the one of that name below it.
    virtual void comeBack(int folder, const QByteArray& name) = 0;
};

/// Leads the visitor through a tree of any depth. 0, or the first error number; folders that cannot be entered are
/// passed over.
[[nodiscard]] int walkTree(FileDescriptor top, TreeVisitor& visitor);

} // namespace vormel
