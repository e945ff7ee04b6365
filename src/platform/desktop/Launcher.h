#pragma once

#include <QDBusConnection>

#include <optional>

namespace vormel {

/// What the launcher shows at the program's icon.
struct LauncherState
{
    qsizetype count = 0;              ///< 0: none is shown
    std::optional<double> progress{}; ///< from 0 to 1

    friend bool operator==(const LauncherState&, const LauncherState&) = default;
};

/// The program's icon on the desktop's launcher.
class Launcher
{
public:
    Launcher() = default;
    Launcher(const Launcher&) = delete;
    Launcher& operator=(const Launcher&) = delete;
    virtual ~Launcher() = default;

    /// Returns at once, and nobody tells whether there is one that can show it.
    virtual void show(const LauncherState& state) = 0;
};

/// Announces it on a bus as com.canonical.Unity.LauncherEntry, which launchers and docks of several desktops follow.
class DesktopLauncher final : public Launcher
{
public:
    explicit DesktopLauncher(QDBusConnection bus)
        : m_bus(std::move(bus))
    {}

    void show(const LauncherState& state) override;

private:
    QDBusConnection m_bus;
};

} // namespace vormel
