#include "platform/desktop/BusCalls.h"

#include "platform/async/Eventual.h"

#include <QDBusPendingCallWatcher>

namespace vormel {

QCoro::Task<QDBusMessage> BusCalls::call(QDBusMessage message)
{
    const QDBusPendingCall pending = m_bus.asyncCall(message);
    if (pending.isError()) // without a bus nobody would ever tell
        co_return pending.reply();
    auto source = std::make_shared<EventualSource<QDBusMessage>>(QDBusMessage());
    Eventual<QDBusMessage> answer = source->eventual();
    auto* watcher = new QDBusPendingCallWatcher(pending, &m_pending);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, source] {
        watcher->deleteLater();
        source->deliver(watcher->reply());
    });
    source.reset(); // the watcher's from here on, so that its end is an answer
    co_return co_await answer;
}

} // namespace vormel
