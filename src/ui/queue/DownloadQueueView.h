#pragma once

#include "model/ItemId.h"
#include "text/Link.h"
#include "ui/ViewPorts.h"

#include <QWidget>

#include <vector>

class QAction;
class QMenu;
class QStackedLayout;

namespace vormel {

class AppSettings;
class BulkCommands;
class DropOverlay;
class EmptyState;
class QueueModel;
class QueueSheets;
class QueueToolBar;
class QueueView;

/// The page of the queue: commands, list or empty state, a banner for missing tools, drops of links, and its sheets.
/// The ports outlive it.
class DownloadQueueView final : public QWidget
{
    Q_OBJECT

public:
    explicit DownloadQueueView(const ViewPorts& ports, QWidget* parent = nullptr);

    /// Has the item's row in sight and gives the list the focus.
    void goTo(const ItemId& id);
    /// Opens the sheet; one that is open stays.
    void showAddURLs();
    /// Shows links that come from outside the window in that sheet, at once or when whatever else is open has gone.
    void offerLinks(const std::vector<Link>& links);
    /// The commands for the whole queue, for menus; the page owns them.
    [[nodiscard]] QList<QAction*> queueActions() const;
    /// Those for many rows at once; the page owns them, too.
    [[nodiscard]] BulkCommands& bulkCommands() const { return *m_bulk; }
    /// Adds what the selected row can be told; nothing if there is none.
    void fillSelectionMenu(QMenu& menu);

Q_SIGNALS:
    /// There is something to show on it while another page is on the screen.
    void wanted();

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void layOut(const ViewPorts& ports);
    void bindTexts(const AppSettings& settings);
    void showListOrEmptyState();

    DownloadManager& m_manager;
    QueueModel* m_model;
    QueueToolBar* m_toolBar;
    QueueView* m_list;
    EmptyState* m_empty;
    QStackedLayout* m_pages;
    DropOverlay* m_overlay;
    QueueSheets* m_sheets;
    BulkCommands* m_bulk;
};

} // namespace vormel
