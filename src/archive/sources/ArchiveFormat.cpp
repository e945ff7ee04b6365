#include "archive/sources/ArchiveFormat.h"

#include "text/FileName.h"

namespace vormel {

std::optional<ArchiveFormat> formatOf(const QString& path)
{
    const QString name = lastComponent(path).toLower();
    struct Row
    {
        QLatin1StringView extension;
        QLatin1StringView ending;
        ArchiveFormat format = ArchiveFormat::zip;
    };
    static constexpr Row rows[]{
        {QLatin1StringView("zip"), {}, ArchiveFormat::zip},
        {QLatin1StringView("rar"), {}, ArchiveFormat::rar},
        {QLatin1StringView("7z"), {}, ArchiveFormat::sevenZip},
        {QLatin1StringView("tar"), {}, ArchiveFormat::tar},
        {QLatin1StringView("gz"), QLatin1StringView(".tar.gz"), ArchiveFormat::tarGz},
        {QLatin1StringView("bz2"), QLatin1StringView(".tar.bz2"), ArchiveFormat::tarBz2},
        {QLatin1StringView("xz"), QLatin1StringView(".tar.xz"), ArchiveFormat::tarXz},
        {QLatin1StringView("tgz"), {}, ArchiveFormat::tarGz},
    };
    const QString extension = pathExtension(name);
    for (const Row& row : rows)
        if (extension == row.extension && name.endsWith(row.ending))
            return row.format;
    return std::nullopt;
}

} // namespace vormel
