#include "platform/desktop/BusCalls.h"

#include "platform/async/Eventual.h"

#include <QDBusPendingCallWatcher>

namespace vormel {

QCoro::Task<QDBusMessage> BusCalls::call(QDBusMessage message)
{
    auto source = std::make_shared<EventualSource<QDBusMessage>>(QDBusMessage());
    Eventual<QDBusMessage> answer = source->eventual();
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(message), &m_pending);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, source] {
        watcher->deleteLater();
        source->deliver(watcher->reply());
    });
    source.reset(); // the watcher's from here on, so that its end is an answer
    co_return co_await answer;
}

} // namespace vormel
