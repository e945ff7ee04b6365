#pragma once

#include <coroutine>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace vormel {

/// A result that comes later, exactly once, and may be awaited by any number of coroutines on the UI thread, each of
/// which gets a copy. They go on inside deliver(), in the order in which they came; who comes after the result goes on
/// at once. Whoever takes one to await it must see to its delivery: copies share the result.
template <typename T>
class SharedEventual
{
public:
    [[nodiscard]] bool isThere() const { return m_state->value.has_value(); }

    /// What comes after the first is dropped.
    void deliver(T value) const
    {
        const std::shared_ptr<State> state = m_state; // a waiter may let go of the last copy
        if (state->value)
            return;
        state->value = std::move(value);
        for (const std::coroutine_handle<> waiter : std::exchange(state->waiters, {}))
            waiter.resume();
    }

    [[nodiscard]] bool await_ready() const { return isThere(); }
    void await_suspend(std::coroutine_handle<> waiter) const { m_state->waiters.push_back(waiter); }
    [[nodiscard]] T await_resume() const { return *m_state->value; }

private:
    struct State
    {
        std::optional<T> value;
        std::vector<std::coroutine_handle<>> waiters;
    };

    std::shared_ptr<State> m_state = std::make_shared<State>();
};

} // namespace vormel
