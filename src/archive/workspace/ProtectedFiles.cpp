#include "archive/workspace/ProtectedFiles.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace vormel {

namespace {

/// Empty for what lies at the top.
QString parentOf(const QString& path)
{
    return path.left(std::max<qsizetype>(0, path.lastIndexOf(u'/')));
}

} // namespace

ProtectedFiles::ProtectedFiles(const QSet<QString>& paths)
{
    for (const QString& path : paths) {
        const QString folder = parentOf(path);
        if (!m_known.contains(folder))
            noteFolder(folder);
        m_names.insert({m_known.value(folder), QFile::encodeName(path.mid(folder.size() + 1))});
        m_held.insert(identityAt(path));
    }
    m_held.remove(FileIdentity());
}

bool ProtectedFiles::hasName(const FileIdentity& folder, const QByteArray& name) const
{
    return m_names.contains({folder, name});
}

bool ProtectedFiles::holds(const FileIdentity& entry) const
{
    return m_held.contains(entry);
}

void ProtectedFiles::noteFolder(const QString& path)
{
    noteWithParents(path);
    // A link on the way leads past folders that hold it too.
    noteWithParents(QFileInfo(path).canonicalFilePath());
}

void ProtectedFiles::noteWithParents(const QString& path)
{
    for (QString at = path; !m_known.contains(at); at = parentOf(at)) {
        const FileIdentity folder = identityAt(at + u'/');
        m_known.insert(at, folder);
        m_held.insert(folder);
    }
}

} // namespace vormel
