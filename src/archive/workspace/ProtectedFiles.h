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
    /// Is that one of them, by whatever name, or a folder in which one lies at any depth?
    [[nodiscard]] bool holds(const FileIdentity& entry) const;

private:
    void noteFolder(const QString& path);
    void noteWithParents(const QString& path);

    QSet<std::pair<FileIdentity, QByteArray>> m_names;
    QSet<FileIdentity> m_held;            ///< the files that are there, and all folders above
    QHash<QString, FileIdentity> m_known; ///< by path
};

} // namespace vormel
