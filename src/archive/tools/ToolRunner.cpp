#include "archive/tools/ToolRunner.h"

#include "archive/ExtractionError.h"
#include "archive/tools/PercentOutput.h"

#include <QFileInfo>

#include <utility>

namespace vormel {

ToolRunner::ToolRunner(Folders folders)
    : m_folders(std::move(folders))
{}

std::optional<QString> ToolRunner::findTool(const QString& name) const
{
    for (const QString& folder : m_folders.searched)
        if (QFileInfo::exists(folder + name))
            return folder + name;
    return std::nullopt;
}

QString ToolRunner::fixedTool(const QString& name) const
{
    return m_folders.fixed + name;
}

QCoro::Task<> ToolRunner::run(QString path, QStringList args, std::function<void(double)> onProgress,
                              std::stop_token stop)
{
    std::function<void(const QByteArray&)> onOutput;
    if (onProgress)
        onOutput = [onProgress](const QByteArray& piece) {
            if (const std::optional<double> fraction = firstFraction(piece))
                onProgress(*fraction);
        };
    const ChildEnd end = co_await m_processes.run(path, args, onOutput, stop);
    if (stop.stop_requested())
        throw ToolStopped();
    if (end.launchError)
        throw ToolLaunchError(*end.launchError);
    if (end.status != 0)
        throw ExtractionError::extractionFailed(end.status, QString::fromUtf8(end.output));
}

} // namespace vormel
