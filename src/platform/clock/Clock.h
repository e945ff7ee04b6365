#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace vormel {

using WallTime = std::chrono::system_clock::time_point;
using SteadyTime = std::chrono::steady_clock::time_point;

/// Something that will happen later, owned by whoever asked for it: destroying or cancelling it means it never happens.
/// For the UI thread only.
class Timer
{
public:
    struct Pending
    {
        std::function<void()> action;

        /// Takes the action out and runs it; without one, does nothing.
        void fire();
    };

    Timer() = default;
    explicit Timer(std::shared_ptr<Pending> pending);
    Timer(Timer&&) noexcept = default;
    Timer& operator=(Timer&& other) noexcept;
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;
    ~Timer();

    void cancel();
    [[nodiscard]] bool isPending() const;

private:
    std::shared_ptr<Pending> m_pending;
};

/// Tells the time and wakes people up. The two readings may be taken on any thread; timers belong to the UI thread.
class Clock
{
public:
    Clock() = default;
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;
    virtual ~Clock() = default;

    /// For dates that are stored or shown.
    [[nodiscard]] virtual WallTime wallNow() const = 0;
    /// For speeds, caps and time-outs.
    [[nodiscard]] virtual SteadyTime steadyNow() const = 0;
    [[nodiscard]] virtual Timer after(std::chrono::nanoseconds delay, std::function<void()> action) = 0;
};

} // namespace vormel
