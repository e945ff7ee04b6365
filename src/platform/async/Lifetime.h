#pragma once

#include <memory>

namespace vormel {

/// Owned by an object that starts work which sleeps; the work keeps a Watch and finds out on waking whether that object
/// is still there.
class Lifetime
{
public:
    class Watch
    {
    public:
        [[nodiscard]] bool isOver() const { return m_mark.expired(); }

    private:
        friend class Lifetime;
        explicit Watch(std::weak_ptr<char> mark)
            : m_mark(std::move(mark))
        {}
        std::weak_ptr<char> m_mark;
    };

    Lifetime() = default;
    Lifetime(const Lifetime&) = delete;
    Lifetime& operator=(const Lifetime&) = delete;

    [[nodiscard]] Watch watch() const { return Watch(m_mark); }

private:
    std::shared_ptr<char> m_mark = std::make_shared<char>();
};

} // namespace vormel
