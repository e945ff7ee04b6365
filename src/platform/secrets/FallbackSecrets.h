#pragma once

#include "platform/async/Lifetime.h"
#include "platform/async/SerialQueue.h"
#include "platform/secrets/SecretStore.h"

namespace vormel {

class FileSecrets;

/// Passwords in the keyring, and in the file for as long as no keyring answers. What the file has moves to the keyring,
/// one password after the other, at the start and whenever a keyring appears; each leaves the file when the keyring
/// gives it back. One that the user does not let into the keyring stays in the file until the next time.
class FallbackSecrets final : public SecretStore
{
public:
    /// Both must outlive this.
    FallbackSecrets(SecretStore& keyring, FileSecrets& file);

    /// Where the next password goes.
    [[nodiscard]] Place place() const override;
    [[nodiscard]] QCoro::Task<> save(QString key, QString secret) override;
    [[nodiscard]] QCoro::Task<QString> load(QString key) override;
    [[nodiscard]] QCoro::Task<> remove(QString key) override;

private:
    [[nodiscard]] bool hasKeyring() const;
    [[nodiscard]] QCoro::Task<> moveToKeyring();
    [[nodiscard]] QCoro::Task<bool> moveToKeyring(QString key);

    SecretStore& m_keyring;
    FileSecrets& m_file;
    SerialQueue m_changes; ///< a move is one, too
    Lifetime m_lifetime;
};

} // namespace vormel
