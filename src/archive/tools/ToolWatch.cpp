#include "archive/tools/ToolWatch.h"

#include "archive/tools/ToolRunner.h"

#include <QFileInfo>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

bool hasSevenZip(const ToolRunner& runner)
{
    const std::array<QString, 3> names{u"7z"_s, u"7za"_s, u"7zz"_s};
    return std::any_of(names.begin(), names.end(), [&runner](const QString& name) { return runner.findTool(name); });
}

} // namespace

FoundTools findTools(const ToolRunner& runner)
{
    return {runner.findTool(u"unrar"_s).has_value(), runner.findTool(u"rar"_s).has_value(), hasSevenZip(runner),
            QFileInfo::exists(runner.fixedTool(u"unzip"_s))};
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

} // namespace vormel
