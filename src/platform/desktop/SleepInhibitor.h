#pragma once

#include "platform/async/Background.h"
#include "platform/async/Lifetime.h"
#include "platform/async/Turn.h"
#include "platform/desktop/BusCalls.h"

#include <QDBusConnection>
#include <QString>

#include <optional>

namespace vormel {

/// Keeps the machine from falling asleep.
class SleepInhibitor
{
public:
    SleepInhibitor() = default;
    SleepInhibitor(const SleepInhibitor&) = delete;
    SleepInhibitor& operator=(const SleepInhibitor&) = delete;
    virtual ~SleepInhibitor() = default;

    /// From now on until release() or the end of this; the reason is for the user. Returns at once; failures are not
    /// reported. Nothing happens if it is held already.
    virtual void hold(const QString& reason) = 0;
    virtual void release() = 0;
};

/// Through the system's login1, and where that refuses, through the session's power management; else sleep comes as
/// ever. Displays may go dark. UI thread only; the way to the system bus is opened on a thread of its own.
class DesktopSleepInhibitor final : public SleepInhibitor
{
public:
    /// The address of the system bus, which is not opened before it is needed.
    DesktopSleepInhibitor(QString systemBus, QDBusConnection sessionBus);
    ~DesktopSleepInhibitor() override;

    void hold(const QString& reason) override;
    void release() override;

private:
    QCoro::Task<> take(QString reason);
    [[nodiscard]] QCoro::Task<> openSystemBus();
    /// A turn that was never given is a refusal.
    [[nodiscard]] QCoro::Task<Turn> askLogin(QString reason);
    [[nodiscard]] QCoro::Task<Turn> askPowerManagement(QString reason);

    QString m_systemAddress;
    QString m_systemName; ///< of our own connection
    std::optional<BusCalls> m_system;
    BusCalls m_session;
    bool m_isWanted = false;
    bool m_isAsking = false;
    Turn m_held;
    Background m_opening;
    Lifetime m_lifetime; ///< ends first: calls that are given up go on for a last time
};

} // namespace vormel
