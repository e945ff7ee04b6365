#include "platform/async/GlibCalls.h"

#include "fixtures/EventLoop.h"
#include "platform/async/GlibContext.h"
#include "platform/async/Spawn.h"

#include <QCoroTask>
#include <QThread>

#include <gtest/gtest.h>

#include <optional>

namespace vormel {
namespace {

/// A call that another thread of GLib's answers.
void answerFromAThread(GCancellable* cancellable, GAsyncReadyCallback callback, gpointer data)
{
    GTask* const task = g_task_new(nullptr, cancellable, callback, data);
    const auto answer = [](GTask* asked, gpointer /*source*/, gpointer /*data*/, GCancellable* /*cancellable*/) {
        g_task_return_int(asked, 5);
    };
    g_task_run_in_thread(task, answer);
    g_object_unref(task);
}

/// A call that comes back after a while.
void answerLater(GCancellable* cancellable, GAsyncReadyCallback callback, gpointer data)
{
    constexpr guint delayMs = 20;
    GTask* const task = g_task_new(nullptr, cancellable, callback, data);
    GSource* const timer = g_timeout_source_new(delayMs);
    const GSourceFunc answer = [](gpointer asked) -> gboolean {
        g_task_return_int(G_TASK(asked), 5);
        return G_SOURCE_REMOVE;
    };
    g_task_attach_source(task, timer, answer);
    g_source_unref(timer);
    g_object_unref(task);
}

/// A call that ends only when it is cancelled.
void neverAnswer(GCancellable* cancellable, GAsyncReadyCallback callback, gpointer data)
{
    GTask* const task = g_task_new(nullptr, cancellable, callback, data);
    GSource* const end = g_cancellable_source_new(cancellable);
    const GCancellableSourceFunc answer = [](GCancellable* /*cancellable*/, gpointer asked) -> gboolean {
        g_task_return_error_if_cancelled(G_TASK(asked));
        return G_SOURCE_REMOVE;
    };
    g_task_attach_source(task, end, G_SOURCE_FUNC(answer));
    g_source_unref(end);
    g_object_unref(task);
}

struct End
{
    bool isGivenUp = false;
    gssize answer = 0;
    QThread* thread = nullptr;
};

QCoro::Task<> await(Eventual<GlibCalls::Result> call, std::optional<End>& end)
{
    const GlibCalls::Result result = co_await call;
    end = End{!result, result ? g_task_propagate_int(G_TASK(result.get()), nullptr) : 0, QThread::currentThread()};
}

TEST(GlibCalls, ComeBackToThisThreadInQtsEventLoop)
{
    GlibContext glib;
    GlibCalls calls(glib);
    for (const auto& start : {&answerFromAThread, &answerLater}) {
        std::optional<End> end;
        spawn(await(calls.run(start), end));
        EXPECT_FALSE(end);
        ASSERT_TRUE(fixtures::waitUntil([&end] { return end.has_value(); }));
        EXPECT_EQ(end->answer, 5);
        EXPECT_EQ(end->thread, QThread::currentThread());
    }
}

TEST(GlibCalls, GoOnWithoutTheAnswerOnceTheyAreGivenUp)
{
    GlibContext glib;
    GlibCalls calls(glib);
    std::optional<End> end;
    spawn(await(calls.run(&neverAnswer), end));
    EXPECT_FALSE(end);
    calls.giveUp();
    ASSERT_TRUE(end);
    EXPECT_TRUE(end->isGivenUp);
    bool isMade = false;
    std::optional<End> next;
    spawn(await(calls.run([&isMade](auto...) { isMade = true; }), next));
    EXPECT_TRUE(next && next->isGivenUp);
    EXPECT_FALSE(isMade);
}

TEST(GlibCalls, OfOthersGoOnWhenSomeAreGivenUp)
{
    GlibContext glib;
    GlibCalls calls(glib);
    GlibCalls others(glib);
    std::optional<End> end;
    spawn(await(others.run(&answerFromAThread), end));
    calls.giveUp();
    ASSERT_TRUE(fixtures::waitUntil([&end] { return end.has_value(); }));
    EXPECT_EQ(end->answer, 5);
}

TEST(GlibCalls, EndWithTheirContextWhoeverAwaitsThem)
{
    std::optional<End> first;
    std::optional<End> second;
    {
        GlibContext glib;
        GlibCalls calls(glib);
        GlibCalls others(glib);
        spawn(await(calls.run(&neverAnswer), first));
        spawn(await(others.run(&answerLater), second));
        glib.endCalls();
        EXPECT_TRUE(first && first->isGivenUp);
        EXPECT_TRUE(second && second->isGivenUp);
        std::optional<End> late;
        spawn(await(GlibCalls(glib).run(&answerFromAThread), late));
        EXPECT_TRUE(late && late->isGivenUp);
    }
    fixtures::turnEventLoop();
}

} // namespace
} // namespace vormel
