#include "Benchmarks.h"
#include "LongQueue.h"
#include "Measure.h"
#include "ProgramInProfile.h"

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>

using namespace Qt::StringLiterals;

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
        giveUp(u"the window did not appear"_s);
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
    report.note(u"From process start to the first painted frame, and memory at rest (platform %1):"_s.arg(
        qEnvironmentVariable("QT_QPA_PLATFORM", u"xcb"_s)));
    const QTemporaryDir directory(scratchTemplate());
    const QString root = QDir(directory.path()).absolutePath();
    writeLongQueue(Folders::below(root + u"/long"_s), 10000);
    const Start empty = medianStart(root + u"/empty"_s);
    const Start full = medianStart(root + u"/long"_s);
    report.add(u"empty_window_ms"_s, empty.milliseconds);
    report.add(u"queue10k_window_ms"_s, full.milliseconds, 150);
    report.add(u"idle_pss_mib"_s, empty.pssMebibytes, 40);
    report.add(u"queue10k_pss_mib"_s, full.pssMebibytes);
}

} // namespace vormel::bench
