#include "Benchmarks.h"
#include "Measure.h"
#include "ProgramInProfile.h"
#include "sites/FileServer.h"

#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>

#include <algorithm>
#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace vormel::bench {

namespace {

constexpr std::array<qint64, 6> caps{512, 1024, 2048, 5120, 10240, 20480};
constexpr int transfers = 3;
constexpr std::chrono::seconds measured{15};

qint64 bytesOnDisk(const QString& folder)
{
    qint64 bytes = 0;
    QDirIterator walk(folder, QDir::Files);
    while (walk.hasNext()) {
        walk.next();
        bytes += walk.fileInfo().size();
    }
    return bytes;
}

/// How far the mean is off the cap, in percent.
double errorOf(qint64 cap, const sites::FileServer& server)
{
    ProgramInProfile program;
    program.manager().settings().maxDownloadSpeedKBps.set(cap);
    std::vector<Link> links;
    for (int i = 0; i < transfers; ++i)
        links.push_back(*Link::parse(QString::fromStdString(server.url("/" + std::to_string(i) + ".bin"))));
    program.manager().addURLs(links, std::nullopt);
    program.manager().commands().startAll();
    // The first second may run at up to twice the cap; what is promised is the mean from then on.
    turnFor(std::chrono::seconds(2));
    QElapsedTimer timer;
    timer.start();
    const qint64 before = bytesOnDisk(program.downloads());
    turnFor(measured);
    const double elapsed = static_cast<double>(timer.nsecsElapsed()) / 1e9;
    const double rate = static_cast<double>(bytesOnDisk(program.downloads()) - before) / elapsed;
    program.manager().commands().pauseAll();
    return std::abs(rate / (static_cast<double>(cap) * 1024) - 1) * 100;
}

} // namespace

void benchCap(Report& report)
{
    report.note(u"The cap, kept by three transfers over 15 seconds:"_s);
    sites::FileServer server;
    for (int i = 0; i < transfers; ++i)
        server.serve("/" + std::to_string(i) + ".bin",
                     {.content = sites::PatternContent(static_cast<std::uint64_t>(i), qint64{1} << 32)});
    double worst = 0;
    for (const qint64 cap : caps) {
        const double error = errorOf(cap, server);
        report.note(u"  %1 KB/s: %2 % off"_s.arg(cap).arg(error, 0, 'f', 2));
        worst = std::max(worst, error);
    }
    report.add(u"cap_error_percent_max"_s, worst, 3);
}

} // namespace vormel::bench
