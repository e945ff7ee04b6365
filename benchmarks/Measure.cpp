#include "Measure.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QTextStream>
#include <QTimer>

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel::bench {

namespace {

double cpuSeconds(int who)
{
    struct rusage usage = {};
    ::getrusage(who, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

template <typename Action>
Cost measured(int who, Action action)
{
    const double cpuBefore = cpuSeconds(who);
    QElapsedTimer timer;
    timer.start();
    action();
    return {static_cast<double>(timer.nsecsElapsed()) / 1e9, cpuSeconds(who) - cpuBefore};
}

} // namespace

Cost median(const std::vector<Cost>& runs)
{
    const auto middle = [&runs](double Cost::*member) {
        std::vector<double> values;
        for (const Cost& run : runs)
            values.push_back(run.*member);
        std::sort(values.begin(), values.end());
        return values[values.size() / 2];
    };
    return {middle(&Cost::wall), middle(&Cost::cpu)};
}

Cost costOfProgram(const QString& program, const QStringList& arguments)
{
    return measured(RUSAGE_CHILDREN, [&program, &arguments] {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(program, arguments);
        if (!process.waitForFinished(-1) || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
            giveUp(program + u" failed: "_s + QString::fromLocal8Bit(process.readAll().right(500)));
    });
}

Cost costOf(const std::function<void()>& action)
{
    return measured(RUSAGE_SELF, action);
}

double medianMilliseconds(const std::function<void()>& action, const std::function<void()>& before)
{
    constexpr int repeats = 21;
    std::vector<Cost> costs;
    for (int i = 0; i < repeats; ++i) {
        before();
        costs.push_back(costOf(action));
    }
    return median(costs).wall * 1000;
}

void settleDisk()
{
    ::sync();
}

void turnUntil(const std::function<bool()>& condition)
{
    const QDeadlineTimer deadline(std::chrono::minutes(5));
    while (!condition()) {
        if (deadline.hasExpired())
            giveUp(u"a condition was not reached within five minutes"_s);
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents);
    }
}

void turnFor(std::chrono::milliseconds time)
{
    QElapsedTimer timer;
    timer.start();
    QTimer tick; // or nothing would turn it
    tick.start(10);
    turnUntil([&timer, time] { return timer.hasExpired(time.count()); });
}

void giveUp(const QString& why)
{
    QTextStream(stderr) << "Benchmark ended: " << why << Qt::endl;
    std::exit(EXIT_FAILURE);
}

} // namespace vormel::bench
