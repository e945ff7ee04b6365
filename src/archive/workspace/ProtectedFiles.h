#pragma once

#include "archive/workspace/OpenFolder.h"

#include <QByteArray>
#include <QHash>
#include <QSet>
#include <QString>

#include <utility>

namespace vormel {

/// Files that must stay where they are, known by the folder they lie in, by whatever path somebody comes there.
class ProtectedFiles
{
public:
    /// The paths are absolute; not all of them need to be there.
    explicit ProtectedFiles(const QSet<QString>& paths);

    /// Is that the name of one of them, there or not?
    [[nodiscard]] bool hasName(const FileIdentity& folder, const QByteArray& name) const;
    /// Does one of them lie in that folder, at any depth?
    [[nodiscard]] bool liesIn(const FileIdentity& folder) const;

private:
    void noteFolder(const QString& path);
    void noteWithParents(const QString& path);

    QSet<std::pair<FileIdentity, QByteArray>> m_names;
    QSet<FileIdentity> m_folders;
    QHash<QString, FileIdentity> m_known; ///< by path
};

} // namespace vormel
