#pragma once

#include "platform/clock/Clock.h"
#include "platform/desktop/Launcher.h"

#include <QObject>

namespace vormel {

class AppSettings;
class QueueActivity;

/// Shows on the launcher how far the queue is and how many files are left, while bytes move and the settings want it.
/// Speaks up at most twice a second, and only when what is shown is another. UI thread only.
class LauncherProgress final : public QObject
{
    Q_OBJECT

public:
    /// All must outlive this.
    struct Ports
    {
        const QueueActivity& activity;
        const AppSettings& settings;
        Clock& clock;
        Launcher& launcher;
    };
    explicit LauncherProgress(const Ports& ports);
    /// Leaves nothing on the launcher.
    ~LauncherProgress() override;

private:
    void look();
    void settingsChanged();
    [[nodiscard]] LauncherState state() const;
    void show(const LauncherState& state);

    Ports m_ports;
    LauncherState m_shown;
    Timer m_pause; ///< until the next word may be said
};

} // namespace vormel
