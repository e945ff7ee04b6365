#include "archive/tools/ToolRunner.h"

#include "archive/tools/ExtractionError.h"
#include "archive/tools/PercentOutput.h"
#include "archive/tools/ToolEnvironment.h"
#include "archive/tools/ToolReason.h"
#include "platform/process/OutputLines.h"

#include <QFileInfo>

#include <memory>
#include <utility>

namespace vormel {

namespace {

/// Whoever listens to a tool's output.
class OutputReader
{
public:
    OutputReader(std::function<void(double)> onProgress, std::function<void(const QByteArray&)> onLine)
        : m_onProgress(std::move(onProgress))
        , m_onLine(std::move(onLine))
    {}
    OutputReader(const OutputReader&) = delete;
    OutputReader& operator=(const OutputReader&) = delete;
    ~OutputReader() = default;

    void read(const QByteArray& piece)
    {
        m_lines.append(piece);
        // The last step: whoever hears of progress may do away with what is read for.
        if (m_onProgress)
            if (const std::optional<double> fraction = firstFraction(piece))
                m_onProgress(*fraction);
    }
    void end() { m_lines.end(); }
    [[nodiscard]] const ToolReason& reason() const { return m_reason; }

private:
    void readLine(const QByteArray& line)
    {
        m_reason.readLine(line);
        if (m_onLine)
            m_onLine(line);
    }

    std::function<void(double)> m_onProgress;
    std::function<void(const QByteArray&)> m_onLine;
    ToolReason m_reason;
    OutputLines m_lines{[this](const QByteArray& line) { readLine(line); }};
};

} // namespace

ToolRunner::ToolRunner(Folders folders)
    : m_folders(std::move(folders))
    , m_processes(toolEnvironment(QProcessEnvironment::systemEnvironment()))
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
                              std::stop_token stop, std::function<void(const QByteArray&)> onLine)
{
    const auto reader = std::make_shared<OutputReader>(onProgress, onLine);
    const std::function<void(const QByteArray&)> onOutput = [reader](const QByteArray& piece) { reader->read(piece); };
    const ChildEnd end = co_await m_processes.run(path, args, onOutput, stop);
    if (stop.stop_requested())
        throw ToolStopped();
    if (end.launchError)
        throw ToolLaunchError(*end.launchError);
    reader->end();
    if (end.status != 0)
        throw ExtractionError::extractionFailed(end.status, QString::fromUtf8(end.output), reader->reason());
}

} // namespace vormel
