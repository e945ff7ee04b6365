#pragma once

#include "platform/async/Eventual.h"

#include <functional>
#include <gio/gio.h>
#include <memory>

namespace vormel {

class GlibContext;

/// Asynchronous calls of GLib's and of libraries built on it, made one after the other for one end, as a coroutine
/// awaits them. UI thread only.
class GlibCalls
{
public:
    /// What the call's own finish function takes.
    using Result = std::shared_ptr<GAsyncResult>;
    /// Makes the call with the last three parameters that all such calls have.
    using Start = std::function<void(GCancellable* cancellable, GAsyncReadyCallback callback, gpointer data)>;

    /// The context must outlive this.
    explicit GlibCalls(GlibContext& context);
    GlibCalls(const GlibCalls&) = delete;
    GlibCalls& operator=(const GlibCalls&) = delete;
    ~GlibCalls();

    /// Null if the call was given up. What is awaited goes on outside of GLib, where it may turn event loops.
    [[nodiscard]] Eventual<Result> run(const Start& start);

    /// Cancels the call that is under way and does not wait for its end; those after it are not made. Whoever awaits
    /// goes on in here.
    void giveUp();
    [[nodiscard]] bool areGivenUp() const { return m_areGivenUp; }

private:
    struct UnderWay;

    static void onReady(GObject* source, GAsyncResult* result, gpointer data);

    GlibContext& m_context;
    std::shared_ptr<GCancellable> m_cancellable;
    std::shared_ptr<EventualSource<Result>> m_waiting;
    bool m_areGivenUp = false;
};

} // namespace vormel
