#pragma once

#include <QPointer>
#include <QWidget>

class QMimeData;
class QStackedLayout;

namespace vormel {

class AddURLView;
class DownloadManager;
class DropOverlay;
class EmptyState;
class QueueModel;
class QueueView;

/// The page of the queue: commands, list or empty state, drops of links, and the sheet for adding them. The manager
/// must outlive it.
class DownloadQueueView final : public QWidget
{
    Q_OBJECT

public:
    explicit DownloadQueueView(DownloadManager& manager, QWidget* parent = nullptr);

    /// Opens the sheet; one that is open stays.
    void showAddURLs();

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void layOut();
    void retranslate();
    void showListOrEmptyState();

    DownloadManager& m_manager;
    QueueModel* m_model;
    QueueView* m_list;
    EmptyState* m_empty;
    QStackedLayout* m_pages;
    DropOverlay* m_overlay;
    QPointer<AddURLView> m_sheet;
};

} // namespace vormel
