#include "app/attention/DesktopAttention.h"

#include "app/attention/EndNotification.h"
#include "platform/desktop/FileViewer.h"
#include "platform/desktop/UrlOpener.h"

#include <QFileInfo>
#include <QUrl>

namespace vormel {

DesktopAttention::DesktopAttention(const ViewPorts& ports, const Buses& buses, std::function<bool()> isLookedAt)
    : m_ports(ports)
    , m_notifier(buses.session)
    , m_inhibitor(buses.system, buses.session)
    , m_launcher(buses.session)
    , m_activity(ports.manager)
    , m_ends(ports.manager, ports.clock, std::move(isLookedAt))
    , m_keepAwake({m_activity, ports.manager.settings(), ports.clock, m_inhibitor})
    , m_launcherProgress({m_activity, ports.manager.settings(), ports.clock, m_launcher})
{
    connect(&m_ends, &EndWatch::ended, this, &DesktopAttention::notify);
}

void DesktopAttention::notify(const std::vector<GroupEnd>& ends)
{
    m_notifier.show(
        endNotification(ends, m_ports.manager.settings().language.value()),
        [this, first = ends.front()](const QString& action, const QString& token) { answer(first, action, token); });
}

void DesktopAttention::answer(const GroupEnd& end, const QString& action, const QString& token)
{
    // What has gone since the list tells of, and not a program that cannot find it.
    if (action == openAction && QFileInfo::exists(end.place))
        m_ports.urlOpener.open(QUrl::fromLocalFile(end.place));
    else if (action == showAction && !end.isFailure())
        m_ports.fileViewer.show(end.place);
    else
        Q_EMIT showRequested(token);
}

} // namespace vormel
