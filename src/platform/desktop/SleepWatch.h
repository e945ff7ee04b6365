#pragma once

#include "platform/async/Lifetime.h"
#include "platform/desktop/BusCalls.h"

#include <QObject>

#include <optional>

namespace vormel {

/// Hears from the login manager when the machine wakes up. Where there is none, nothing is ever heard. UI thread only.
class SleepWatch final : public QObject
{
    Q_OBJECT

public:
    /// Nothing before follow().
    explicit SleepWatch(QObject* parent = nullptr);

    /// The bus is the system's, or one that plays it.
    void follow(QDBusConnection bus);

Q_SIGNALS:
    /// The machine has slept, and sleeps no more.
    void wokeUp();

private:
    Q_SLOT void prepareForSleep(bool isGoingToSleep, const QDBusMessage& message);
    QCoro::Task<> wakeUpIfTold(QString sender);

    std::optional<BusCalls> m_calls;
    Lifetime m_lifetime; ///< ends first: calls that are given up go on for a last time
};

} // namespace vormel
