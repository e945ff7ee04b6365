#pragma once

#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <vector>

namespace vormel::bench {

/// What one run cost, in seconds.
struct Cost
{
    double wall = 0;
    double cpu = 0; ///< user and system together
};

/// Of several runs, the one in the middle, wall and CPU apart.
[[nodiscard]] Cost median(const std::vector<Cost>& runs);

/// Runs a program to its end. Ends the benchmark if the program cannot be started or fails.
[[nodiscard]] Cost costOfProgram(const QString& program, const QStringList& arguments);

/// Runs the action in this process.
[[nodiscard]] Cost costOf(const std::function<void()>& action);

/// The middle of 21 runs of the action in this process, each after a preparation that does not count. Wall time.
[[nodiscard]] double medianMilliseconds(
    const std::function<void()>& action, const std::function<void()>& before = [] {});

/// Waits until what was written so far is on disk, so that no run pays for the one before.
void settleDisk();

/// Turns the event loop until the condition holds. Ends the benchmark if that takes minutes.
void turnUntil(const std::function<bool()>& condition);

/// Turns the event loop for so long.
void turnFor(std::chrono::milliseconds time);

[[noreturn]] void giveUp(const QString& why);

} // namespace vormel::bench
