#pragma once

#include "archive/workspace/LinkJudge.h"
#include "archive/workspace/OpenFolder.h"
#include "archive/workspace/TreeWalk.h"

#include <QByteArray>
#include <QHash>
#include <QSet>

#include <sys/stat.h>

#include <utility>
#include <vector>

namespace vormel {

/// A look at a whole unpacked tree, which finds what must not stay in it. Changes nothing but what keeps it from
/// looking: the owner's access to folders.
class TreeSurvey final : private TreeVisitor
{
public:
    /// 0, or the system's error number; then not everything was seen. Called once.
    [[nodiscard]] int look(FileDescriptor top);

    /// Links that lead out, files with a name outside the tree, and what is no file, folder or link.
    [[nodiscard]] bool isHarmful(const FileIdentity& folder, const QByteArray& name, const struct stat& facts) const;

private:
    std::vector<QByteArray> arrive(int folder, const QByteArray& name) override;
    void comeBack(int folder, const QByteArray& name) override;
    void lookAt(int folder, const FolderEntry& entry);
    void lookAtLink(int folder, const QByteArray& name);
    void judge();

    int m_systemError = 0;
    LinkJudge m_judge;
    std::vector<int> m_path; ///< numbers of the folders from the top to here
    QHash<int, FileIdentity> m_foldersWithLinks;
    QSet<std::pair<FileIdentity, QByteArray>> m_escapingLinks;
    /// Of files with several names: how many of them are not in the tree.
    QHash<FileIdentity, nlink_t> m_namesOutside;
};

} // namespace vormel
