#pragma once

#include "platform/async/Lifetime.h"
#include "platform/async/Turn.h"
#include "platform/desktop/BusCalls.h"
#include "platform/desktop/SystemBus.h"

#include <QDBusConnection>
#include <QString>

#include <array>
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

/// Through the session's power management, the session's manager and the system's login1: all that can be had, as none
/// of them is heeded by every desktop. login1 alone would not do: it lets a desktop suspend the machine over the locks
/// of its own user. Where there is none, sleep comes as ever. Displays may go dark. UI thread only; the way to the
/// system bus is opened on a thread of its own.
class DesktopSleepInhibitor final : public SleepInhibitor
{
public:
    /// The address of the system bus, which is not opened before it is needed.
    DesktopSleepInhibitor(QString systemBus, QDBusConnection sessionBus);
    ~DesktopSleepInhibitor() override;

    void hold(const QString& reason) override;
    void release() override;

private:
    struct Lock
    {
        /// A turn that was never given is a refusal.
        QCoro::Task<Turn> (DesktopSleepInhibitor::*ask)(QString reason);
        bool isAsked = false; ///< and has not answered yet
        Turn held{};
    };

    QCoro::Task<> take(Lock& lock, QString reason);
    [[nodiscard]] QCoro::Task<Turn> askLogin(QString reason);
    [[nodiscard]] QCoro::Task<Turn> askPowerManagement(QString reason);
    [[nodiscard]] QCoro::Task<Turn> askSessionManager(QString reason);
    [[nodiscard]] QCoro::Task<Turn> askSession(QDBusMessage ask, QDBusMessage giveBack);

    SystemBus m_systemBus;
    std::optional<BusCalls> m_system;
    BusCalls m_session;
    bool m_isWanted = false;
    std::array<Lock, 3> m_locks{Lock{&DesktopSleepInhibitor::askPowerManagement},
                                Lock{&DesktopSleepInhibitor::askSessionManager},
                                Lock{&DesktopSleepInhibitor::askLogin}};
    Lifetime m_lifetime; ///< ends first: calls that are given up go on for a last time
};

} // namespace vormel
