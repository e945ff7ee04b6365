#pragma once

#include <QCoroTask>
#include <QFutureWatcher>
#include <QThreadPool>
#include <QtConcurrentRun>

#include <coroutine>
#include <exception>
#include <optional>
#include <type_traits>
#include <utility>

namespace vormel {

/// Threads for work that may take long, such as walks through folders. Whoever awaits it always goes on from the event
/// loop. Its end waits for what is under way; whoever awaits that goes on if the event loop turns once more, and has to
/// look whether its own objects are still there. UI thread only.
class Background
{
public:
    /// Runs the work on one of the threads and gives its result, or throws what it throws. The work must own all that
    /// it uses.
    template <typename Work>
    [[nodiscard]] QCoro::Task<std::invoke_result_t<Work>> run(Work work)
    {
        using Result = std::invoke_result_t<Work>;
        auto end = std::make_shared<End<Result>>();
        const FromEventLoop over{QtConcurrent::run(&m_threads, [end, work = std::move(work)]() mutable {
            try {
                if constexpr (std::is_void_v<Result>)
                    work();
                else
                    end->result.emplace(work());
            } catch (...) {
                end->failure = std::current_exception();
            }
        })};
        co_await over;
        if (end->failure)
            std::rethrow_exception(end->failure);
        if constexpr (!std::is_void_v<Result>)
            co_return std::move(*end->result);
    }

private:
    /// Whoever begins work has returned before anything comes of it, however soon it is done.
    struct FromEventLoop
    {
        QFuture<void> over;

        [[nodiscard]] bool await_ready() const noexcept { return false; }
        void await_suspend(std::coroutine_handle<> waiting) const
        {
            auto* watcher = new QFutureWatcher<void>;
            QObject::connect(watcher, &QFutureWatcherBase::finished, watcher, [watcher, waiting] {
                watcher->deleteLater();
                waiting.resume();
            });
            watcher->setFuture(over);
        }
        void await_resume() const noexcept {}
    };

    template <typename Result>
    struct End
    {
        std::optional<std::conditional_t<std::is_void_v<Result>, bool, Result>> result;
        std::exception_ptr failure;
    };

    QThreadPool m_threads;
};

} // namespace vormel
