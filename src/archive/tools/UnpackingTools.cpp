#include "archive/tools/UnpackingTools.h"

#include "archive/sources/ArchiveFormat.h"
#include "archive/tools/ExtractionError.h"
#include "archive/tools/ToolRunner.h"

#include <QFileInfo>

namespace vormel {

namespace {

std::optional<QString> firstTool(const QStringList& names, const ToolRunner& tools)
{
    for (const QString& name : names)
        if (std::optional<QString> path = tools.findTool(name))
            return path;
    return std::nullopt;
}

std::optional<QString> sevenZipTool(const ToolRunner& tools)
{
    return firstTool({QStringLiteral("7z"), QStringLiteral("7za"), QStringLiteral("7zz")}, tools);
}

QString tarLetters(ArchiveFormat format)
{
    switch (format) {
    case ArchiveFormat::tarGz:
        return QStringLiteral("-xzf");
    case ArchiveFormat::tarBz2:
        return QStringLiteral("-xjf");
    case ArchiveFormat::tarXz:
        return QStringLiteral("-xJf");
    default:
        return QStringLiteral("-xf");
    }
}

UnpackingTool sevenZip(const QString& tool, const Password& password)
{
    return {tool, [=](const QString& archive, const QString& to) { return sevenZipArguments(archive, to, password); }};
}

std::vector<UnpackingTool> zipTools(const Password& password, const ToolRunner& tools)
{
    std::vector<UnpackingTool> found;
    // It knows no passwords, and most systems have not got it.
    if (const QString ditto = tools.fixedTool(QStringLiteral("ditto")); !password && QFileInfo::exists(ditto))
        found.push_back({ditto, dittoArguments});
    found.push_back({tools.fixedTool(QStringLiteral("unzip")),
                     [=](const QString& archive, const QString& to) { return unzipArguments(archive, to, password); },
                     false, true, false});
    if (const std::optional<QString> tool = sevenZipTool(tools))
        found.push_back(sevenZip(*tool, password));
    return found;
}

} // namespace

std::vector<UnpackingTool> unpackingTools(const QString& archive, const Password& password, const ToolRunner& tools)
{
    const std::optional<ArchiveFormat> format = formatOf(archive);
    if (!format)
        throw ExtractionError::unsupportedFormat();
    if (format == ArchiveFormat::zip)
        return zipTools(password, tools);
    std::vector<UnpackingTool> found;
    if (format == ArchiveFormat::rar) {
        if (const std::optional<QString> tool = rarTool(tools))
            found.push_back({*tool,
                             [=](const QString& from, const QString& to) { return rarArguments(from, to, password); },
                             true});
    } else if (format == ArchiveFormat::sevenZip) {
        if (const std::optional<QString> tool = sevenZipTool(tools)) {
            found.push_back(sevenZip(*tool, password));
            found.back().tellsProgress = true;
        }
    } else {
        const QString letters = tarLetters(*format);
        found.push_back({tools.fixedTool(QStringLiteral("tar")),
                         [=](const QString& from, const QString& to) { return tarArguments(letters, from, to); }, false,
                         false});
    }
    return found;
}

QString missingTool(const QString& archive)
{
    return formatOf(archive) == ArchiveFormat::rar ? QStringLiteral("unrar") : QStringLiteral("7z");
}

std::optional<QString> rarTool(const ToolRunner& tools)
{
    return firstTool({QStringLiteral("unrar"), QStringLiteral("rar")}, tools);
}

} // namespace vormel
