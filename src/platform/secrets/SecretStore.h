#pragma once

#include <QCoroTask>
#include <QObject>
#include <QString>

namespace vormel {

/// The user's passwords, each under a key. UI thread only, which never waits for them: a locked keyring may ask the
/// user first. A password that cannot be had is an empty text, never an error.
class SecretStore : public QObject
{
    Q_OBJECT

public:
    /// Where passwords are kept on this machine.
    enum class Place
    {
        keyring,
        ownFile, ///< no keyring answers
        nowhere, ///< every password is forgotten at once
    };

    /// May change, as keyrings come and go.
    [[nodiscard]] virtual Place place() const = 0;
    /// Takes the place of what was kept under the key.
    [[nodiscard]] virtual QCoro::Task<> save(QString key, QString secret) = 0;
    [[nodiscard]] virtual QCoro::Task<QString> load(QString key) = 0;
    [[nodiscard]] virtual QCoro::Task<> remove(QString key) = 0;

Q_SIGNALS:
    void placeChanged();
};

} // namespace vormel
