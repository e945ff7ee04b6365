#pragma once

#include "fixtures/PrivateBus.h"

#include <QByteArray>
#include <QMap>
#include <QProcess>

#include <libsecret/secret.h>
#include <memory>
#include <vector>

namespace vormel::fixtures {

/// The desktop's own keyring on a private bus, and what others do to its items by hand. Its files are in the sandbox,
/// so that one which is started again knows what the last one kept.
class RealKeyring
{
public:
    static constexpr const char* password = "of the keyring";

    RealKeyring(const Sandbox& sandbox, const PrivateBus& bus);
    RealKeyring(const RealKeyring&) = delete;
    RealKeyring& operator=(const RealKeyring&) = delete;
    ~RealKeyring();

    /// Unlocked. False if it did not come.
    [[nodiscard]] bool start();
    /// The bus starts it when it is asked for, unlocked. To be called before the bus is there.
    static void letTheBusStartIt(const Sandbox& sandbox);
    /// Holds it still: it takes calls and answers none.
    void hold() const;
    void kill();
    void lock() const;

    struct Item
    {
        QByteArray secret;
        QMap<QString, QString> attributes;
    };
    /// Puts an item beside those that are there.
    void add(const QString& key, const QByteArray& secret) const;
    /// Every item under the key, also those that others would not find.
    [[nodiscard]] std::vector<Item> items(const QString& key) const;

private:
    [[nodiscard]] std::shared_ptr<SecretService> service() const;
    [[nodiscard]] bool isOnBus() const;
    void signal(int number) const;

    const PrivateBus& m_bus;
    QProcess m_daemon;
};

} // namespace vormel::fixtures
