#pragma once

#include "fixtures/EventLoop.h"
#include "platform/async/Spawn.h"

#include <QCoroTask>

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <utility>

namespace vormel::fixtures {

/// A call under way, and how it ended.
template <typename T>
class Call
{
public:
    explicit Call(QCoro::Task<T> task) { spawn(wait(std::move(task), m_end)); }

    [[nodiscard]] bool isOver() const { return m_end->has_value(); }
    /// Waits for it.
    [[nodiscard]] T end() const
    {
        EXPECT_TRUE(waitUntil([this] { return isOver(); }));
        return m_end->value_or(T());
    }

private:
    using End = std::shared_ptr<std::optional<T>>;

    static QCoro::Task<> wait(QCoro::Task<T> task, End end) { *end = co_await task; }

    End m_end = std::make_shared<std::optional<T>>();
};

/// For one that gives nothing.
inline QCoro::Task<bool> endOf(QCoro::Task<> task)
{
    co_await task;
    co_return true;
}

} // namespace vormel::fixtures
