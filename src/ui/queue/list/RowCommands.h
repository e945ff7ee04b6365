#pragma once

#include "engine/groups/DownloadGroup.h"
#include "ui/ViewPorts.h"
#include "ui/queue/rows/RowButton.h"

#include <QStringList>

#include <optional>

namespace vormel {

/// What each button of a row or header asks of the queue. Knows nothing of views.
class RowCommands
{
public:
    explicit RowCommands(const ViewPorts& ports);

    // By value, as what is commanded may leave the queue under way.
    void run(RowButton button, ItemPtr item) const;        ///< one of the buttons of a row
    void run(RowButton button, DownloadGroup group) const; ///< one of the buttons of a header

    /// What is finished, with its own program: the file, or the folder that its archive was unpacked to, whichever part
    /// of the set it is. Nothing happens for an item that is not, and where neither is there any more.
    void open(const DownloadItem& item) const;
    /// Puts the text on the clipboard; nothing happens without one.
    static void copy(const QString& text);
    /// The links of the items, one in each line.
    static void copyLinks(const std::vector<ItemPtr>& items);

    [[nodiscard]] bool hasCustomName(const QString& groupId) const;
    /// An empty name brings the group's own back.
    void renameGroup(const QString& groupId, const QString& name) const;
    /// Puts one of the groups that are displayed in front of the one at the destination, which may be behind the last.
    void moveGroup(const QStringList& displayedIds, int row, int destination) const;

private:
    /// The folder that the archive of the item's set was unpacked to, if it was.
    [[nodiscard]] std::optional<QString> unpackedTo(const DownloadItem& item) const;
    void showInViewer(const DownloadItem& item) const;
    /// The first finished file, or the folder that the files come to.
    void showInViewer(const DownloadGroup& group) const;

    ViewPorts m_ports;
};

} // namespace vormel
