#pragma once

#include <coroutine>
#include <memory>
#include <optional>
#include <utility>

namespace vormel {

/// A result that comes later, exactly once, and may be awaited by one coroutine on the UI thread. The side that makes
/// the result holds an EventualSource; a source that goes away unanswered delivers the value it was given for that
/// case, so an awaiting coroutine always goes on.
template <typename T>
class Eventual
{
public:
    struct State
    {
        std::optional<T> value;
        std::coroutine_handle<> waiter;
    };

    explicit Eventual(std::shared_ptr<State> state)
        : m_state(std::move(state))
    {}

    [[nodiscard]] bool await_ready() const { return m_state->value.has_value(); }
    void await_suspend(std::coroutine_handle<> waiter) { m_state->waiter = waiter; }
    [[nodiscard]] T await_resume() { return std::move(*m_state->value); }

private:
    std::shared_ptr<State> m_state;
};

/// The giving side of an Eventual. For the UI thread only; the awaiting coroutine goes on inside deliver().
template <typename T>
class EventualSource
{
public:
    explicit EventualSource(T ifAbandoned)
        : m_state(std::make_shared<typename Eventual<T>::State>())
        , m_ifAbandoned(std::move(ifAbandoned))
    {}
    EventualSource(const EventualSource&) = delete;
    EventualSource& operator=(const EventualSource&) = delete;
    ~EventualSource()
    {
        if (!m_state->value)
            deliver(std::move(m_ifAbandoned));
    }

    [[nodiscard]] Eventual<T> eventual() const { return Eventual<T>(m_state); }

    void deliver(T value)
    {
        if (m_state->value)
            return;
        m_state->value = std::move(value);
        if (const std::coroutine_handle<> waiter = std::exchange(m_state->waiter, nullptr))
            waiter.resume();
    }

private:
    std::shared_ptr<typename Eventual<T>::State> m_state;
    T m_ifAbandoned;
};

} // namespace vormel
