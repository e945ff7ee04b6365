#include "archive/tools/ToolWatch.h"

#include "archive/tools/ToolRunner.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

std::optional<QString> sevenZip(const ToolRunner& runner)
{
    for (const QString& name : {u"7z"_s, u"7za"_s, u"7zz"_s}) {
        if (std::optional<QString> path = runner.findTool(name))
            return path;
    }
    return std::nullopt;
}

std::optional<QString> unzip(const ToolRunner& runner)
{
    const QString path = runner.fixedTool(u"unzip"_s);
    return QFileInfo::exists(path) ? std::optional(path) : std::nullopt;
}

} // namespace

FoundTools findTools(const ToolRunner& runner)
{
    return {runner.findTool(u"unrar"_s).has_value(), runner.findTool(u"rar"_s).has_value(),
            sevenZip(runner).has_value(), unzip(runner).has_value()};
}

ToolWatch::ToolWatch(const ToolRunner& runner, QObject* parent)
    : QObject(parent)
    , m_runner(runner)
    , m_tools(findTools(runner))
{
    for (const QString& folder : runner.searchedFolders())
        m_folders.addPath(folder); // one that is not there is left out
    connect(&m_folders, &QFileSystemWatcher::directoryChanged, this, &ToolWatch::look);
}

void ToolWatch::look()
{
    const FoundTools now = findTools(m_runner);
    if (now == m_tools)
        return;
    m_tools = now;
    Q_EMIT toolsChanged();
}

std::vector<ToolPlace> ToolWatch::places() const
{
    return {{u"unrar"_s, m_runner.findTool(u"unrar"_s)},
            {u"rar"_s, m_runner.findTool(u"rar"_s)},
            {u"7-Zip"_s, sevenZip(m_runner)},
            {u"unzip"_s, unzip(m_runner)}};
}

} // namespace vormel
