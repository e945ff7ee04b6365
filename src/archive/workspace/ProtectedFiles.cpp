#include "archive/workspace/ProtectedFiles.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace vormel {

namespace {

/// A folder that is not there has none.
FileIdentity identityBehind(const QString& path)
{
    struct stat facts = {};
    return ::stat(QFile::encodeName(path).constData(), &facts) == 0 ? identityOf(facts) : FileIdentity();
}

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
    }
}

bool ProtectedFiles::hasName(const FileIdentity& folder, const QByteArray& name) const
{
    return m_names.contains({folder, name});
}

bool ProtectedFiles::liesIn(const FileIdentity& folder) const
{
    return m_folders.contains(folder);
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
        const FileIdentity folder = identityBehind(at + u'/');
        m_known.insert(at, folder);
        m_folders.insert(folder);
    }
}

} // namespace vormel
