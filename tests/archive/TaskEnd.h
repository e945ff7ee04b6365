#pragma once

#include "archive/tools/ExtractionError.h"
#include "fixtures/EventLoop.h"
#include "platform/async/Spawn.h"

#include <QCoroTask>

#include <gtest/gtest.h>

#include <optional>
#include <typeinfo>

namespace vormel {

/// How a task of the archive floor ended.
struct TaskEnd
{
    bool isOver = false;
    /// Of ExtractionError.
    std::optional<ExtractionError::Kind> kind;
    int exitCode = 0;
    QString output;
    /// The description as damage of a wrong password that may be some.
    std::optional<QString> damage;
    /// Of any error.
    std::optional<QString> description;
    bool isLaunchError = false;

    [[nodiscard]] bool isSuccess() const { return isOver && !description; }
};

inline QCoro::Task<> keepTaskEnd(QCoro::Task<> task, TaskEnd& end)
{
    try {
        co_await task;
    } catch (const ExtractionError& error) {
        end.kind = error.kind();
        end.exitCode = error.exitCode();
        end.output = error.output();
        if (const std::optional<ExtractionError> damage = error.asDamage())
            end.damage = damage->errorDescription();
        end.description = error.errorDescription();
    } catch (const DescribedError& error) {
        end.isLaunchError = dynamic_cast<const ToolLaunchError*>(&error) != nullptr;
        end.description = error.errorDescription();
    }
    end.isOver = true;
}

/// Turns the event loop until the task is over.
inline TaskEnd runToEnd(QCoro::Task<> task)
{
    TaskEnd end;
    spawn(keepTaskEnd(std::move(task), end));
    EXPECT_TRUE(fixtures::waitUntil([&] { return end.isOver; }, std::chrono::seconds(60)));
    return end;
}

/// What it gives is not asked for.
template <typename T>
QCoro::Task<> dropped(QCoro::Task<T> task)
{
    co_await task;
}

template <typename T>
TaskEnd runToEnd(QCoro::Task<T> task)
{
    return runToEnd(dropped(std::move(task)));
}

} // namespace vormel
