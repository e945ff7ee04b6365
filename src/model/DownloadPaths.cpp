#include "model/DownloadPaths.h"

#include "model/SetName.h"
#include "text/FileName.h"

namespace vormel {

QString DownloadPaths::groupFolder(const QString& filename) const
{
    const QString base = isSetMember(filename) ? setBaseName(filename) : QString();
    return base.isEmpty() ? m_downloadFolder : m_downloadFolder + u'/' + safeFileName(base);
}

QString DownloadPaths::finalFile(const QString& filename) const
{
    return groupFolder(filename) + u'/' + safeFileName(filename);
}

QString DownloadPaths::partFile(const QString& filename) const
{
    return finalFile(filename) + QStringLiteral(".download");
}

} // namespace vormel
