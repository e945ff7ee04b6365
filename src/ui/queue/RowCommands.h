#pragma once

#include "engine/groups/DownloadGroup.h"
#include "ui/ViewPorts.h"
#include "ui/queue/RowButton.h"

#include <QStringList>

namespace vormel {

/// What each button of a row or header asks of the queue. Knows nothing of views.
class RowCommands
{
public:
    explicit RowCommands(const ViewPorts& ports);

    // By value, as what is commanded may leave the queue under way.
    void run(RowButton button, ItemPtr item) const;        ///< one of the buttons of a row
    void run(RowButton button, DownloadGroup group) const; ///< one of the buttons of a header

    [[nodiscard]] bool hasCustomName(const QString& groupId) const;
    /// An empty name brings the group's own back.
    void renameGroup(const QString& groupId, const QString& name) const;
    /// One place up or down among the groups that are displayed; nothing at the end of the list.
    void moveGroup(const QStringList& displayedIds, int row, bool isUp) const;

private:
    void showInViewer(const DownloadItem& item) const;

    ViewPorts m_ports;
};

} // namespace vormel
