#pragma once

#include <QStringList>

#include <chrono>

class QDBusConnection;

namespace vormel {

class SingleInstance;

/// How a start ends that found the program running.
enum class SecondStart
{
    handedOver,
    becameFirst, ///< the other one has ended; this one holds the lock now
    unanswered,
    tooMuch, ///< more than InstanceMessage takes; nobody was asked
};

/// Asks the running program, by the bus or else without, to come forward and open the addresses. While nobody listens,
/// as the other one is about to end or has just begun, tries it all again, and the lock first. Waits for the patience
/// and two seconds at most.
[[nodiscard]] SecondStart settleSecondStart(SingleInstance& instance, const QDBusConnection& bus,
                                            const QStringList& addresses, const QString& token,
                                            std::chrono::milliseconds patience);

} // namespace vormel
