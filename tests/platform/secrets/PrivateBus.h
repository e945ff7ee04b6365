#pragma once

#include "fixtures/Sandbox.h"

#include <QDBusConnection>
#include <QProcess>
#include <QString>

#include <memory>

namespace vormel::fixtures {

/// Makes the process go when the test's own goes, however that ends.
void endWithTheTest(QProcess& process);

/// A session bus of its own. Nothing is on it, and it can start nothing but what is in the sandbox's folder "services".
class PrivateBus
{
public:
    explicit PrivateBus(const Sandbox& sandbox);
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;
    ~PrivateBus();

    /// Empty if it did not start.
    [[nodiscard]] QString address() const { return m_address; }
    /// A connection of the test's own.
    [[nodiscard]] QDBusConnection connection() const;
    void end();

private:
    QProcess m_daemon;
    QString m_address;
};

} // namespace vormel::fixtures
