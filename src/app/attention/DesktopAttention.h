#pragma once

#include "app/attention/EndWatch.h"
#include "app/attention/KeepAwake.h"
#include "app/attention/LauncherProgress.h"
#include "app/attention/QueueActivity.h"
#include "platform/desktop/Launcher.h"
#include "platform/desktop/Notifier.h"
#include "platform/desktop/SleepInhibitor.h"
#include "ui/ViewPorts.h"

namespace vormel {

/// What the program does on the desktop beside its window: says what has ended while the user looks elsewhere, keeps
/// the machine awake as long as it works, and shows on the launcher how far it is. Each as the settings want it; where
/// the desktop has no such thing, nothing happens. UI thread only.
class DesktopAttention final : public QObject
{
    Q_OBJECT

public:
    struct Buses
    {
        QDBusConnection session;
        QString system; ///< the address
    };

    /// The ports must outlive this. Does the user look at the program now?
    DesktopAttention(const ViewPorts& ports, const Buses& buses, std::function<bool()> isLookedAt);

Q_SIGNALS:
    /// The user wants to see the item; the window comes next.
    void itemWanted(const vormel::ItemId& id);
    /// The user wants to see the window; the token allows it to take the focus, and may be empty.
    void showRequested(const QString& token);

private:
    void notify(const std::vector<GroupEnd>& ends);
    void answer(const GroupEnd& end, const QString& action, const QString& token);

    ViewPorts m_ports;
    DesktopNotifier m_notifier;
    DesktopSleepInhibitor m_inhibitor;
    DesktopLauncher m_launcher;
    QueueActivity m_activity;
    EndWatch m_ends;
    KeepAwake m_keepAwake;
    LauncherProgress m_launcherProgress;
};

} // namespace vormel
