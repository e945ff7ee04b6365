#include "platform/secrets/KeyringSecrets.h"

#include "platform/async/GlibContext.h"
#include "platform/secrets/KeyringItems.h"
#include "platform/secrets/KeyringService.h"

#include <utility>

namespace vormel {

namespace {

/// The second time finds a service that has come back.
constexpr int attempts = 2;

} // namespace

KeyringSecrets::KeyringSecrets(Clock& clock, const QString& busAddress)
    : m_clock(clock)
    , m_glib(std::make_unique<GlibContext>())
    , m_service(std::make_unique<KeyringService>(*m_glib, clock, busAddress, [this] {
        // Later, as this is said in the middle of GLib's work.
        QMetaObject::invokeMethod(
            this, [this] { Q_EMIT placeChanged(); }, Qt::QueuedConnection);
    }))
{}

KeyringSecrets::~KeyringSecrets()
{
    m_service->close();
    // Whoever waits goes on in here and must find a whole object.
    m_glib->endCalls();
}

SecretStore::Place KeyringSecrets::place() const
{
    return m_service->isThere() ? Place::keyring : Place::nowhere;
}

QCoro::Task<QString> KeyringSecrets::load(QString key)
{
    for (int attempt = 0; attempt < attempts; ++attempt) {
        std::optional<QString> secret = co_await tryToLoad(key);
        if (secret)
            co_return std::move(*secret);
    }
    co_return {};
}

/// Nothing if nobody answered.
QCoro::Task<std::optional<QString>> KeyringSecrets::tryToLoad(QString key)
{
    const KeyringService::Session session = co_await m_service->open();
    if (!session)
        co_return std::nullopt;
    KeyringItems items(*m_glib, m_clock, session, key);
    std::optional<KeyringItems::Password> password = co_await items.load();
    if (password && password->isLocked) {
        // One prompt for all who want a password now.
        const KeyringEnd end = co_await m_unlocking.join([this, &items] { return askToUnlock(items); });
        password.reset();
        if (end == KeyringEnd::refused)
            co_return QString();
        if (end == KeyringEnd::done)
            password = co_await items.load();
    }
    if (!password) {
        m_service->forget();
        co_return std::nullopt;
    }
    co_return password->text;
}

/// Whoever asks awaits this, and so owns the items for long enough.
QCoro::Task<KeyringEnd> KeyringSecrets::askToUnlock(KeyringItems& items) // NOLINT(*-reference-coroutine-parameters)
{
    if (m_refusedAt && m_clock.steadyNow() < *m_refusedAt + peace)
        co_return KeyringEnd::refused;
    const KeyringEnd end = co_await items.unlock();
    noteEnd(end);
    co_return end;
}

QCoro::Task<> KeyringSecrets::save(QString key, QString secret)
{
    return replace(std::move(key), std::move(secret));
}

QCoro::Task<> KeyringSecrets::remove(QString key)
{
    return replace(std::move(key), std::nullopt);
}

QCoro::Task<> KeyringSecrets::replace(QString key, std::optional<QString> secret)
{
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const KeyringEnd end = co_await tryToReplace(key, secret);
        noteEnd(end);
        if (end != KeyringEnd::unanswered)
            co_return;
        m_service->forget();
    }
}

QCoro::Task<KeyringEnd> KeyringSecrets::tryToReplace(QString key, std::optional<QString> secret)
{
    const KeyringService::Session session = co_await m_service->open();
    if (!session)
        co_return KeyringEnd::unanswered;
    KeyringItems items(*m_glib, m_clock, session, key);
    KeyringEnd end = co_await items.removeAll();
    if (end == KeyringEnd::done && secret)
        end = co_await items.add(*secret);
    co_return end;
}

void KeyringSecrets::noteEnd(KeyringEnd end)
{
    if (end == KeyringEnd::refused)
        m_refusedAt = m_clock.steadyNow();
}

} // namespace vormel
