#include "platform/clock/Clock.h"

#include <utility>

namespace vormel {

void Timer::Pending::fire()
{
    if (const std::function<void()> now = std::exchange(action, nullptr))
        now();
}

Timer::Timer(std::shared_ptr<Pending> pending)
    : m_pending(std::move(pending))
{}

Timer& Timer::operator=(Timer&& other) noexcept
{
    if (this != &other) {
        cancel();
        m_pending = std::move(other.m_pending);
    }
    return *this;
}

Timer::~Timer()
{
    cancel();
}

void Timer::cancel()
{
    if (m_pending)
        m_pending->action = nullptr;
    m_pending.reset();
}

bool Timer::isPending() const
{
    return m_pending && m_pending->action;
}

} // namespace vormel
