#include "app/attention/DesktopAttention.h"

#include "app/attention/EndNotification.h"
#include "platform/desktop/FileViewer.h"
#include "platform/desktop/UrlOpener.h"

#include <QFileInfo>
#include <QUrl>

#include <algorithm>

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
    // Of many, one that failed wants to be seen first.
    const auto failed = std::find_if(ends.begin(), ends.end(), [](const GroupEnd& end) { return end.isFailure(); });
    m_notifier.show(endNotification(ends, m_ports.manager.settings().language.value()),
                    [this, end = failed == ends.end() ? ends.front() : *failed](
                        const QString& action, const QString& token) { answer(end, action, token); });
}

void DesktopAttention::answer(const GroupEnd& end, const QString& action, const QString& token)
{
    // What has gone since the list tells of, and not a program that cannot find it.
    if (action == openAction && QFileInfo::exists(end.place))
        return m_ports.urlOpener.open(QUrl::fromLocalFile(end.place));
    if (action == showAction && !end.isFailure())
        return m_ports.fileViewer.show(end.place);
    Q_EMIT itemWanted(end.item);
    Q_EMIT showRequested(token);
}

} // namespace vormel
