#pragma once

#include <functional>
#include <utility>

namespace vormel {

/// The right to do something that others wait for; given back by its end.
class [[nodiscard]] Turn
{
public:
    /// One that was never given.
    Turn() = default;
    explicit Turn(std::function<void()> giveBack)
        : m_giveBack(std::move(giveBack))
    {}
    Turn(Turn&& other) noexcept
        : m_giveBack(std::exchange(other.m_giveBack, nullptr))
    {}
    Turn& operator=(Turn&& other) noexcept
    {
        m_giveBack.swap(other.m_giveBack);
        return *this;
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;
    ~Turn()
    {
        if (m_giveBack)
            m_giveBack();
    }

    [[nodiscard]] bool isGiven() const { return m_giveBack != nullptr; }

private:
    std::function<void()> m_giveBack;
};

} // namespace vormel
