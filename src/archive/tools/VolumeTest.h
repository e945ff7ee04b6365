#pragma once

#include <QCoroTask>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace vormel {

class PlainPaths;
class ToolRunner;

/// What the test of a set of RAR volumes told.
struct VolumeTest
{
    enum class Outcome
    {
        sound,
        damaged,
        passwordNeeded,
        failed, ///< the tool blames no volume
    };

    Outcome outcome = Outcome::sound;
    QStringList badVolumes; ///< sorted names, of a damaged set
    QString reason;         ///< in the tool's words, of a failed test
};

/// Tests a set by its first volume with unrar or rar. onProgress, which may be empty, gets fractions from 0 to 1. The
/// trace gets the lines of the developer's log. Throws ExtractionError::toolNotFound and ToolLaunchError. The tools
/// outlive the test.
[[nodiscard]] QCoro::Task<VolumeTest> testVolumes(ToolRunner& tools, std::shared_ptr<const PlainPaths> paths,
                                                  std::function<void(double)> onProgress,
                                                  std::function<void(const QString&)> trace);

} // namespace vormel
