#include "platform/async/GlibCalls.h"

#include "platform/async/GlibContext.h"
#include "platform/async/GlibObject.h"

#include <utility>

namespace vormel {

/// What GLib hands back at the end of a call.
struct GlibCalls::UnderWay
{
    GlibContext& context;
    std::weak_ptr<EventualSource<Result>> waiting;
};

GlibCalls::GlibCalls(GlibContext& context)
    : m_context(context)
    , m_cancellable(adopted(g_cancellable_new()))
{
    m_context.m_groups.insert(this);
}

GlibCalls::~GlibCalls()
{
    m_context.m_groups.erase(this);
}

Eventual<GlibCalls::Result> GlibCalls::run(const Start& start)
{
    const auto waiting = std::make_shared<EventualSource<Result>>(nullptr);
    Eventual<Result> eventual = waiting->eventual();
    if (m_areGivenUp || m_context.m_isEnding)
        return eventual;
    m_waiting = waiting;
    ++m_context.m_callsUnderWay;
    auto underWay = std::make_unique<UnderWay>(UnderWay{m_context, waiting});
    const GlibContext::Scope scope(m_context);
    start(m_cancellable.get(), &GlibCalls::onReady, underWay.release());
    return eventual;
}

void GlibCalls::onReady(GObject* /*source*/, GAsyncResult* result, gpointer data)
{
    const std::unique_ptr<UnderWay> call(static_cast<UnderWay*>(data));
    --call->context.m_callsUnderWay;
    const Result kept = adopted(static_cast<GAsyncResult*>(g_object_ref(result)));
    const auto deliver = [waiting = call->waiting, kept] {
        if (const std::shared_ptr<EventualSource<Result>> source = waiting.lock())
            source->deliver(kept);
    };
    QMetaObject::invokeMethod(&call->context.m_later, deliver, Qt::QueuedConnection);
}

void GlibCalls::giveUp()
{
    m_context.m_groups.erase(this);
    m_areGivenUp = true;
    {
        const GlibContext::Scope scope(m_context);
        g_cancellable_cancel(m_cancellable.get());
    }
    // Nothing may come after this: whoever goes on may be the end of this object.
    if (const std::shared_ptr<EventualSource<Result>> waiting = std::exchange(m_waiting, nullptr))
        waiting->deliver(nullptr);
}

} // namespace vormel
