#pragma once

#include <QObject>
#include <QTimer>

#include <gio/gio.h>
#include <memory>
#include <set>

class QSocketNotifier;

namespace vormel {

class GlibCalls;

/// Where GLib's asynchronous calls come back: on the UI thread, between other events, in whatever loop Qt turns there,
/// be it GLib's own or not. Nothing of it blocks but the end. UI thread only.
///
/// GLib's own input and output happen on a thread of GLib's; only what wakes this context is watched, and no file or
/// socket that somebody would attach to it.
class GlibContext
{
public:
    /// Whatever is asked of GLib while one lives comes back here.
    class Scope
    {
    public:
        explicit Scope(const GlibContext& context);
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
        ~Scope();

    private:
        GMainContext* m_context;
    };

    GlibContext();
    GlibContext(const GlibContext&) = delete;
    GlibContext& operator=(const GlibContext&) = delete;
    /// Ends all calls.
    ~GlibContext();

    /// Gives up all calls, so that whoever awaits one goes on in here; calls made from now on are given up at once.
    /// Returns when GLib has let go of them, after a second at most.
    void endCalls();

private:
    friend class GlibCalls;

    void turn();
    void letGoOfCalls();

    GMainContext* m_context;
    std::unique_ptr<QSocketNotifier> m_wakeUp;
    QTimer m_timer;
    QObject m_later;               ///< context of what is posted
    std::set<GlibCalls*> m_groups; ///< that have not been given up
    int m_callsUnderWay = 0;       ///< also those that were given up
    bool m_isEnding = false;
};

} // namespace vormel
