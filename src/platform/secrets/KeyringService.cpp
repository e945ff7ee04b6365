#include "platform/secrets/KeyringService.h"

#include "platform/async/GlibCalls.h"
#include "platform/async/GlibObject.h"
#include "platform/secrets/KeyringSession.h"

#include <utility>

namespace vormel {

namespace {

constexpr const char* serviceName = "org.freedesktop.secrets";
constexpr const char* busName = "org.freedesktop.DBus";
constexpr const char* busPath = "/org/freedesktop/DBus";
constexpr int usualPatience = -1;
constexpr std::chrono::seconds busPatience{10};

/// Is the service among the names that the bus can start?
bool namesService(GVariant* reply)
{
    const std::unique_ptr<GVariant, decltype(&g_variant_unref)> names(g_variant_get_child_value(reply, 0),
                                                                      &g_variant_unref);
    const std::unique_ptr<const gchar*, decltype(&g_free)> texts(g_variant_get_strv(names.get(), nullptr), &g_free);
    return g_strv_contains(texts.get(), serviceName) != FALSE;
}

} // namespace

KeyringService::KeyringService(GlibContext& glib, Clock& clock, const QString& busAddress,
                               std::function<void()> changed)
    : m_glib(glib)
    , m_clock(clock)
    , m_busAddress(busAddress.toUtf8())
    , m_changed(std::move(changed))
{
    static_cast<void>(connected());
}

KeyringService::~KeyringService()
{
    close();
}

void KeyringService::close()
{
    unwatch();
    if (m_connection && !g_dbus_connection_is_closed(m_connection.get()))
        g_dbus_connection_close(m_connection.get(), nullptr, nullptr, nullptr);
}

void KeyringService::unwatch()
{
    if (const guint watch = std::exchange(m_watch, 0); watch != 0)
        g_bus_unwatch_name(watch);
}

SharedEventual<KeyringService::Session> KeyringService::open()
{
    return m_opening.join([this] { return openSession(); });
}

SharedEventual<bool> KeyringService::connected()
{
    return m_connecting.join([this] { return connect(); });
}

QCoro::Task<bool> KeyringService::connect()
{
    if (m_connection && !g_dbus_connection_is_closed(m_connection.get()))
        co_return true;
    m_session.reset();
    m_connection.reset();
    if (!m_busAddress.isEmpty())
        co_await reachBus();
    if (!m_connection) {
        setThere(false);
        co_return false;
    }
    m_canBeStarted = co_await findsStarter();
    watch();
    co_return true;
}

QCoro::Task<> KeyringService::reachBus()
{
    GlibCalls calls(m_glib);
    const Timer limit = m_clock.after(busPatience, [&calls] { calls.giveUp(); });
    const GlibCalls::Start start = [this](GCancellable* cancellable, GAsyncReadyCallback callback, gpointer data) {
        constexpr int flags =
            G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION;
        g_dbus_connection_new_for_address(m_busAddress.constData(), static_cast<GDBusConnectionFlags>(flags), nullptr,
                                          cancellable, callback, data);
    };
    const GlibCalls::Result result = co_await calls.run(start);
    GlibError error;
    if (result)
        m_connection = adopted(g_dbus_connection_new_for_address_finish(result.get(), error.place()));
}

QCoro::Task<bool> KeyringService::findsStarter()
{
    GlibCalls calls(m_glib);
    const GlibCalls::Start start = [this](GCancellable* cancellable, GAsyncReadyCallback callback, gpointer data) {
        g_dbus_connection_call(m_connection.get(), busName, busPath, busName, "ListActivatableNames", nullptr,
                               G_VARIANT_TYPE("(as)"), G_DBUS_CALL_FLAGS_NONE, usualPatience, cancellable, callback,
                               data);
    };
    const GlibCalls::Result result = co_await calls.run(start);
    GlibError error;
    GVariant* const reply =
        result ? g_dbus_connection_call_finish(m_connection.get(), result.get(), error.place()) : nullptr;
    if (!reply)
        co_return false;
    const bool isNamed = namesService(reply);
    g_variant_unref(reply);
    co_return isNamed;
}

void KeyringService::watch()
{
    const auto appeared = [](GDBusConnection* /*bus*/, const gchar* /*name*/, const gchar* /*owner*/, gpointer self) {
        static_cast<KeyringService*>(self)->setThere(true);
    };
    const auto vanished = [](GDBusConnection* bus, const gchar* /*name*/, gpointer self) {
        auto* const service = static_cast<KeyringService*>(self);
        service->setThere(bus && service->m_canBeStarted);
    };
    unwatch();
    const GlibContext::Scope scope(m_glib);
    m_watch = g_bus_watch_name_on_connection(m_connection.get(), serviceName, G_BUS_NAME_WATCHER_FLAGS_NONE, appeared,
                                             vanished, this, nullptr);
}

QCoro::Task<KeyringService::Session> KeyringService::openSession()
{
    // Copies are returned: a task moves what it is given.
    if (m_session)
        co_return Session(m_session);
    const bool isConnected = co_await connected();
    if (!isConnected)
        co_return Session();
    GlibCalls calls(m_glib);
    const GlibCalls::Start start = [this](GCancellable* cancellable, GAsyncReadyCallback callback, gpointer data) {
        g_async_initable_new_async(keyringSessionType(), G_PRIORITY_DEFAULT, cancellable, callback, data, //
                                   "g-connection", m_connection.get(), "flags", SECRET_SERVICE_OPEN_SESSION, nullptr);
    };
    const GlibCalls::Result result = co_await calls.run(start);
    if (result) {
        const auto maker = adopted(g_async_result_get_source_object(result.get()));
        GlibError error;
        GObject* const made = g_async_initable_new_finish(G_ASYNC_INITABLE(maker.get()), result.get(), error.place());
        m_session = adopted(SECRET_SERVICE(made));
    }
    setThere(m_session != nullptr);
    co_return Session(m_session);
}

void KeyringService::setThere(bool isThere)
{
    if (std::exchange(m_isThere, isThere) != isThere)
        m_changed();
}

} // namespace vormel
