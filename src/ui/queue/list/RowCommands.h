#pragma once

#include "engine/groups/DownloadGroup.h"
#include "ui/ViewPorts.h"
#include "ui/queue/rows/RowButton.h"

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
    /// Puts one of the groups that are displayed in front of the one at the destination, which may be behind the last.
    void moveGroup(const QStringList& displayedIds, int row, int destination) const;

private:
    void showInViewer(const DownloadItem& item) const;

    ViewPorts m_ports;
};

} // namespace vormel
