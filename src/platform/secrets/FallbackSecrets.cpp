#include "platform/secrets/FallbackSecrets.h"

#include "platform/async/Spawn.h"
#include "platform/secrets/FileSecrets.h"

namespace vormel {

FallbackSecrets::FallbackSecrets(SecretStore& keyring, FileSecrets& file)
    : m_keyring(keyring)
    , m_file(file)
{
    connect(&keyring, &SecretStore::placeChanged, this, [this] {
        Q_EMIT placeChanged();
        if (hasKeyring())
            spawn(moveToKeyring());
    });
    spawn(moveToKeyring());
}

SecretStore::Place FallbackSecrets::place() const
{
    return hasKeyring() ? Place::keyring : Place::ownFile;
}

bool FallbackSecrets::hasKeyring() const
{
    return m_keyring.place() == Place::keyring;
}

QCoro::Task<QString> FallbackSecrets::load(QString key)
{
    // What is in the file was saved after what the keyring may have.
    return m_file.keys().contains(key) ? m_file.load(key) : m_keyring.load(key);
}

QCoro::Task<> FallbackSecrets::save(QString key, QString secret)
{
    const Lifetime::Watch lifetime = m_lifetime.watch();
    const Turn turn = co_await m_changes.take();
    if (lifetime.isOver())
        co_return;
    co_await m_keyring.save(key, secret);
    if (lifetime.isOver())
        co_return;
    // Only now is it sure whether there is one.
    if (hasKeyring())
        co_await m_file.remove(key);
    else
        co_await m_file.save(key, secret);
}

QCoro::Task<> FallbackSecrets::remove(QString key)
{
    const Lifetime::Watch lifetime = m_lifetime.watch();
    const Turn turn = co_await m_changes.take();
    if (lifetime.isOver())
        co_return;
    co_await m_file.remove(key);
    co_await m_keyring.remove(key);
}

QCoro::Task<> FallbackSecrets::moveToKeyring()
{
    const Lifetime::Watch lifetime = m_lifetime.watch();
    const QStringList keys = m_file.keys();
    for (const QString& key : keys) {
        const bool hasArrived = co_await moveToKeyring(key);
        // Who does not let one in is not asked about the others.
        if (!hasArrived || lifetime.isOver())
            co_return;
    }
}

/// False if the file still has it.
QCoro::Task<bool> FallbackSecrets::moveToKeyring(QString key)
{
    const Lifetime::Watch lifetime = m_lifetime.watch();
    const Turn turn = co_await m_changes.take();
    if (lifetime.isOver())
        co_return false;
    if (!m_file.keys().contains(key))
        co_return true;
    const QString secret = co_await m_file.load(key);
    co_await m_keyring.save(key, secret);
    if (lifetime.isOver() || !hasKeyring())
        co_return false;
    const QString arrived = co_await m_keyring.load(key);
    if (lifetime.isOver() || !hasKeyring() || arrived != secret)
        co_return false;
    co_await m_file.remove(key);
    co_return true;
}

} // namespace vormel
