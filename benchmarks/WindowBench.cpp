#include "Benchmarks.h"
#include "LongQueue.h"
#include "Measure.h"
#include "ProgramInProfile.h"

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>

namespace vormel::bench {

namespace {

constexpr int warmUps = 2;
constexpr int rounds = 7;

struct Start
{
    double milliseconds = 0;
    double pssMebibytes = 0;
};

/// Starts the program on a profile and hears from it when its first frame is painted and what it holds at rest.
Start probe(const QString& profile)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QElapsedTimer timer;
    timer.start();
    process.start(QStringLiteral(VORMEL_WINDOW_PROBE), {profile});
    Start start;
    if (!process.waitForReadyRead(30000))
        giveUp(QStringLiteral("the window did not appear"));
    start.milliseconds = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    process.waitForFinished(30000);
    start.pssMebibytes = process.readAll().trimmed().split('\n').last().toDouble() / 1024;
    return start;
}

Start medianStart(const QString& profile)
{
    std::vector<Cost> costs;
    for (int i = 0; i < warmUps + rounds; ++i) {
        const Start start = probe(profile);
        if (i >= warmUps)
            costs.push_back({start.milliseconds, start.pssMebibytes});
    }
    const Cost middle = median(costs);
    return {middle.wall, middle.cpu};
}

} // namespace

void benchWindow(Report& report)
{
    report.note(QStringLiteral("From process start to the first painted frame, and memory at rest (platform %1):")
                    .arg(qEnvironmentVariable("QT_QPA_PLATFORM", QStringLiteral("xcb"))));
    const QTemporaryDir directory(scratchTemplate());
    const QString root = QDir(directory.path()).absolutePath();
    writeLongQueue(Folders::below(root + QStringLiteral("/long")), 10000);
    const Start empty = medianStart(root + QStringLiteral("/empty"));
    const Start full = medianStart(root + QStringLiteral("/long"));
    report.add(QStringLiteral("empty_window_ms"), empty.milliseconds);
    report.add(QStringLiteral("queue10k_window_ms"), full.milliseconds, 150);
    report.add(QStringLiteral("idle_pss_mib"), empty.pssMebibytes, 40);
    report.add(QStringLiteral("queue10k_pss_mib"), full.pssMebibytes);
}

} // namespace vormel::bench
