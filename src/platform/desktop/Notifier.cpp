#include "platform/desktop/Notifier.h"

#include "platform/async/Spawn.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

const QString notifications = u"org.freedesktop.Notifications"_s;
const QString notificationsPath = u"/org/freedesktop/Notifications"_s;

/// Some servers never tell that a notification was closed.
constexpr std::size_t mostShown = 32;

QDBusMessage callOfServer(const QString& method)
{
    return QDBusMessage::createMethodCall(notifications, notificationsPath, notifications, method);
}

QDBusMessage notifyCall(const Notification& notification, const QStringList& capabilities)
{
    constexpr uint replacesNone = 0;
    constexpr int lifeAsTheServerLikes = -1;
    QStringList actions;
    if (capabilities.contains(u"actions"_s)) {
        for (const Notification::Action& action : notification.actions)
            actions << action.key << action.label;
    }
    const bool readsMarkup = capabilities.contains(u"body-markup"_s);
    const QVariantMap hints{{u"desktop-entry"_s, u"org.vormel.Vormel"_s}, {u"category"_s, notification.category}};
    QDBusMessage call = callOfServer(u"Notify"_s);
    call << u"Vormel"_s << replacesNone << u"org.vormel.Vormel"_s << notification.title
         << (readsMarkup ? notification.text.toHtmlEscaped() : notification.text) << actions << hints
         << lifeAsTheServerLikes;
    return call;
}

} // namespace

DesktopNotifier::DesktopNotifier(QDBusConnection bus)
    : m_calls(std::move(bus))
{}

/// To whoever the server is: to name it here would mean to wait until the bus has told who that is now.
void DesktopNotifier::listen()
{
    if (std::exchange(m_isListening, true))
        return;
    QDBusConnection& bus = m_calls.bus();
    bus.connect({}, notificationsPath, notifications, u"ActionInvoked"_s, this,
                SLOT(actionInvoked(uint, QString, QDBusMessage)));
    bus.connect({}, notificationsPath, notifications, u"ActivationToken"_s, this,
                SLOT(activationToken(uint, QString, QDBusMessage)));
    bus.connect({}, notificationsPath, notifications, u"NotificationClosed"_s, this,
                SLOT(notificationClosed(uint, uint, QDBusMessage)));
}

void DesktopNotifier::show(Notification notification, Chosen chosen)
{
    listen();
    spawn(tell(std::move(notification), std::move(chosen)));
}

QCoro::Task<> DesktopNotifier::tell(Notification notification, Chosen chosen)
{
    const Lifetime::Watch lifetime = m_lifetime.watch();
    // Asked each time, as the next server may be another one.
    const QDBusMessage capabilities = co_await m_calls.call(callOfServer(u"GetCapabilities"_s));
    if (lifetime.isOver() || capabilities.type() != QDBusMessage::ReplyMessage)
        co_return;
    const QDBusMessage answer =
        co_await m_calls.call(notifyCall(notification, capabilities.arguments().value(0).toStringList()));
    if (lifetime.isOver() || answer.type() != QDBusMessage::ReplyMessage)
        co_return;
    if (m_shown.size() == mostShown)
        m_shown.erase(m_shown.begin());
    m_shown.push_back({answer.service(), answer.arguments().value(0).toUInt(), std::move(chosen), {}});
}

/// Only the server that shows it speaks for a notification.
std::vector<DesktopNotifier::Shown>::iterator DesktopNotifier::find(uint id, const QDBusMessage& message)
{
    return std::find_if(m_shown.begin(), m_shown.end(), [id, &message](const Shown& shown) {
        return shown.id == id && shown.server == message.service();
    });
}

void DesktopNotifier::activationToken(uint id, const QString& token, const QDBusMessage& message)
{
    if (const auto shown = find(id, message); shown != m_shown.end())
        shown->token = token;
}

void DesktopNotifier::actionInvoked(uint id, const QString& action, const QDBusMessage& message)
{
    const auto found = find(id, message);
    if (found == m_shown.end())
        return;
    const Shown shown = std::move(*found);
    m_shown.erase(found);
    shown.chosen(action, shown.token);
}

void DesktopNotifier::notificationClosed(uint id, uint /*reason*/, const QDBusMessage& message)
{
    if (const auto shown = find(id, message); shown != m_shown.end())
        m_shown.erase(shown);
}

} // namespace vormel
