#include "platform/async/GlibContext.h"

#include "platform/async/GlibCalls.h"

#include <QSocketNotifier>

namespace vormel {

namespace {

constexpr guint longestEndMs = 1000;

struct Wait
{
    int wakeUp = -1;    ///< readable when there is something to do
    int timeoutMs = -1; ///< -1 for none
};

/// What GLib would wait for now.
Wait nextWait(GMainContext* context)
{
    gint priority = 0;
    g_main_context_prepare(context, &priority);
    Wait wait;
    GPollFD wakeUp = {};
    g_main_context_query(context, G_MAXINT, &wait.timeoutMs, &wakeUp, 1);
    wait.wakeUp = wakeUp.fd;
    return wait;
}

} // namespace

GlibContext::Scope::Scope(const GlibContext& context)
    : m_context(context.m_context)
{
    g_main_context_push_thread_default(m_context);
}

GlibContext::Scope::~Scope()
{
    g_main_context_pop_thread_default(m_context);
}

GlibContext::GlibContext()
    // Without the flag, GLib would wake nobody while its context is not being polled by itself.
    : m_context(g_main_context_new_with_flags(G_MAIN_CONTEXT_FLAGS_OWNERLESS_POLLING))
{
    const Scope scope(*this);
    m_wakeUp = std::make_unique<QSocketNotifier>(nextWait(m_context).wakeUp, QSocketNotifier::Read);
    QObject::connect(m_wakeUp.get(), &QSocketNotifier::activated, &m_later, [this] { turn(); });
    m_timer.setSingleShot(true);
    QObject::connect(&m_timer, &QTimer::timeout, &m_later, [this] { turn(); });
}

GlibContext::~GlibContext()
{
    endCalls();
    m_wakeUp.reset();
    g_main_context_unref(m_context);
}

void GlibContext::turn()
{
    const Scope scope(*this);
    g_main_context_iteration(m_context, FALSE);
    const int timeout = nextWait(m_context).timeoutMs;
    if (timeout >= 0)
        m_timer.start(timeout);
    else
        m_timer.stop();
}

void GlibContext::endCalls()
{
    m_isEnding = true;
    while (!m_groups.empty())
        (*m_groups.begin())->giveUp();
    letGoOfCalls();
}

void GlibContext::letGoOfCalls()
{
    const Scope scope(*this);
    GSource* const limit = g_timeout_source_new(longestEndMs);
    bool isOver = false;
    const auto stop = [](gpointer over) -> gboolean {
        *static_cast<bool*>(over) = true;
        return G_SOURCE_REMOVE;
    };
    g_source_set_callback(limit, stop, &isOver, nullptr);
    g_source_attach(limit, m_context);
    while (m_callsUnderWay > 0 && !isOver)
        g_main_context_iteration(m_context, TRUE);
    g_source_destroy(limit);
    g_source_unref(limit);
    while (g_main_context_iteration(m_context, FALSE)) {
    }
}

} // namespace vormel
