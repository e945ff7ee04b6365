#include "archive/tools/ToolWatch.h"

#include "archive/tools/ToolRunner.h"

#include <QFileInfo>

#include <algorithm>
#include <array>

namespace vormel {

namespace {

bool hasSevenZip(const ToolRunner& runner)
{
    const std::array<QString, 3> names{QStringLiteral("7z"), QStringLiteral("7za"), QStringLiteral("7zz")};
    return std::any_of(names.begin(), names.end(), [&runner](const QString& name) { return runner.findTool(name); });
}

} // namespace

FoundTools findTools(const ToolRunner& runner)
{
    return {runner.findTool(QStringLiteral("unrar")).has_value(), runner.findTool(QStringLiteral("rar")).has_value(),
            hasSevenZip(runner), QFileInfo::exists(runner.fixedTool(QStringLiteral("unzip")))};
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
