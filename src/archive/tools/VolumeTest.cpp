#include "archive/tools/VolumeTest.h"

#include "archive/tools/BadVolumes.h"
#include "archive/tools/ExtractionError.h"
#include "archive/tools/PlainPaths.h"
#include "archive/tools/ToolRunner.h"
#include "archive/tools/UnpackingTools.h"
#include "text/FileName.h"

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

QString reasonOf(const ExtractionError& failure)
{
    const QString reason = failure.reason().text().simplified();
    return reason.isEmpty() ? u"code "_s + QString::number(failure.exitCode()) : reason;
}

VolumeTest failedTest(const ExtractionError& failure, const BadVolumes& blame, const PlainPaths& paths)
{
    using Outcome = VolumeTest::Outcome;
    VolumeTest test;
    for (const QString& name : blame.names())
        test.badVolumes << paths.realName(name);
    if (!test.badVolumes.isEmpty())
        test.outcome = Outcome::damaged;
    else if (blame.wantsPassword())
        test.outcome = Outcome::passwordNeeded;
    else {
        test.outcome = Outcome::failed;
        test.reason = reasonOf(failure);
    }
    return test;
}

} // namespace

QCoro::Task<VolumeTest> testVolumes(ToolRunner& tools, std::shared_ptr<const PlainPaths> paths,
                                    std::function<void(double)> onProgress, std::function<void(const QString&)> trace)
{
    const std::optional<QString> tool = rarTool(tools);
    if (!tool)
        throw ExtractionError::toolNotFound(u"unrar/rar"_s);
    const QString about = u"[Verify] "_s + paths->realName(lastComponent(paths->archive()));
    const auto blame = std::make_shared<BadVolumes>(paths->archive());
    const QStringList args{u"t"_s, paths->archive()};
    const std::function<void(const QByteArray&)> onLine = [blame](const QByteArray& line) { blame->readLine(line); };
    std::optional<ExtractionError> failure;
    try {
        co_await tools.run(*tool, args, onProgress, {}, onLine);
    } catch (const ExtractionError& error) {
        failure = error;
    }
    if (!failure) {
        trace(about + u" OK"_s);
        co_return VolumeTest();
    }
    trace(about + u" FAILED (code %1):\n"_s.arg(failure->exitCode()) + failure->output());
    const VolumeTest test = failedTest(*failure, *blame, *paths);
    trace(u"[Verify] bad volumes: "_s + test.badVolumes.join(u", "_s));
    co_return test;
}

} // namespace vormel
