#include "archive/tools/UnpackingTools.h"

#include "archive/sources/ArchiveFormat.h"
#include "archive/tools/ExtractionError.h"
#include "archive/tools/ToolRunner.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

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
    return firstTool({u"7z"_s, u"7za"_s, u"7zz"_s}, tools);
}

QString tarLetters(ArchiveFormat format)
{
    switch (format) {
    case ArchiveFormat::tarGz:
        return u"-xzf"_s;
    case ArchiveFormat::tarBz2:
        return u"-xjf"_s;
    case ArchiveFormat::tarXz:
        return u"-xJf"_s;
    default:
        return u"-xf"_s;
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
    if (const QString ditto = tools.fixedTool(u"ditto"_s); !password && QFileInfo::exists(ditto))
        found.push_back({ditto, dittoArguments});
    found.push_back({tools.fixedTool(u"unzip"_s),
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
        found.push_back({tools.fixedTool(u"tar"_s),
                         [=](const QString& from, const QString& to) { return tarArguments(letters, from, to); }, false,
                         false});
    }
    return found;
}

QString missingTool(const QString& archive)
{
    return formatOf(archive) == ArchiveFormat::rar ? u"unrar"_s : u"7z"_s;
}

std::optional<QString> rarTool(const ToolRunner& tools)
{
    return firstTool({u"unrar"_s, u"rar"_s}, tools);
}

} // namespace vormel
