#include "app/attention/LauncherProgress.h"

#include "app/attention/QueueActivity.h"
#include "model/AppSettings.h"

#include <cmath>

namespace vormel {

namespace {

/// In steps that can be seen.
std::optional<double> wholePercent(const std::optional<double>& fraction)
{
    constexpr double hundred = 100;
    return fraction ? std::optional(std::floor(*fraction * hundred) / hundred) : std::nullopt;
}

} // namespace

LauncherProgress::LauncherProgress(const Ports& ports)
    : m_ports(ports)
{
    connect(&ports.activity, &QueueActivity::changed, this, &LauncherProgress::look);
    connect(&ports.settings, &AppSettings::changed, this, &LauncherProgress::settingsChanged);
    look();
}

LauncherProgress::~LauncherProgress()
{
    show({});
}

LauncherState LauncherProgress::state() const
{
    if (!m_ports.settings.showLauncherProgress.value() || !m_ports.activity.isMoving())
        return {};
    return {m_ports.activity.filesLeft(), wholePercent(m_ports.activity.fraction())};
}

void LauncherProgress::look()
{
    if (!m_pause.isPending())
        show(state());
}

void LauncherProgress::settingsChanged()
{
    if (!m_ports.settings.showLauncherProgress.value())
        m_pause.cancel(); // what is switched off goes at once
    look();
}

void LauncherProgress::show(const LauncherState& state)
{
    constexpr std::chrono::milliseconds pause{500};
    if (state == m_shown)
        return;
    m_shown = state;
    m_ports.launcher.show(state);
    m_pause = m_ports.clock.after(pause, [this] { look(); });
}

} // namespace vormel
