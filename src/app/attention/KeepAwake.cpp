#include "app/attention/KeepAwake.h"

#include "app/attention/QueueActivity.h"
#include "model/AppSettings.h"
#include "platform/desktop/SleepInhibitor.h"

namespace vormel {

KeepAwake::KeepAwake(const Ports& ports)
    : m_ports(ports)
{
    connect(&ports.activity, &QueueActivity::changed, this, &KeepAwake::look);
    connect(&ports.settings, &AppSettings::changed, this, &KeepAwake::look);
    look();
}

KeepAwake::~KeepAwake()
{
    release();
}

void KeepAwake::look()
{
    // A lost connection is tried again within ten seconds, and recovery volumes come a minute after a failure.
    constexpr std::chrono::seconds rest{90};
    if (!m_ports.settings.keepAwake.value())
        return release();
    if (!m_ports.activity.isMoving() && !m_ports.activity.areToolsAtWork()) {
        if (m_isHeld && !m_release.isPending())
            m_release = m_ports.clock.after(rest, [this] { release(); });
        return;
    }
    m_release.cancel();
    if (std::exchange(m_isHeld, true))
        return;
    m_ports.inhibitor.hold(pair(m_ports.settings.language.value(), u"Files are being downloaded or extracted",
                                u"Download o estrazione di file in corso"));
}

void KeepAwake::release()
{
    m_release.cancel();
    if (std::exchange(m_isHeld, false))
        m_ports.inhibitor.release();
}

} // namespace vormel
