#include "model/DownloadPaths.h"

#include "model/SetName.h"
#include "text/FileName.h"

namespace vormel {

namespace {

/// ".part", a number of eleven digits and ".rar".
constexpr qsizetype maxUsualSuffix = 20;
/// As much as fits into a name with such a suffix and ".download" behind it.
constexpr qsizetype maxBaseBytes = 225;

/// The name of a file on disk. What must be cut off the name of a volume is cut off what its set has in common: the
/// same for all of them, or they would not find each other.
QString diskName(const QString& filename)
{
    const QString base = isSetMember(filename) ? setBaseName(filename) : QString();
    const QString suffix = filename.mid(base.size());
    if (base.isEmpty() || suffix.size() > maxUsualSuffix || !filename.startsWith(base))
        return safeFileName(filename);
    return base.toUtf8().size() > maxBaseBytes ? safeFileName(base, maxBaseBytes) + suffix
                                               : safeFileName(filename, maxBaseBytes + maxUsualSuffix);
}

} // namespace

QString DownloadPaths::groupFolder(const QString& filename) const
{
    const QString base = isSetMember(filename) ? setBaseName(filename) : QString();
    return base.isEmpty() ? m_downloadFolder : m_downloadFolder + u'/' + safeFileName(base);
}

QString DownloadPaths::finalFile(const QString& filename) const
{
    return groupFolder(filename) + u'/' + diskName(filename);
}

} // namespace vormel
