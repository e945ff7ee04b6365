#pragma once

#include "model/PendingQuestions.h"
#include "ui/ViewPorts.h"

#include <QPointer>
#include <QWidget>

class QMimeData;
class QStackedLayout;

namespace vormel {

class AddURLView;
class ArchivePasswordSheetView;
class DropOverlay;
class EmptyState;
class QueueModel;
class QueueView;

/// The page of the queue: commands, list or empty state, drops of links, the sheet for adding them, and those by which
/// the queue asks something. What the ports name must outlive it.
class DownloadQueueView final : public QWidget
{
    Q_OBJECT

public:
    explicit DownloadQueueView(const ViewPorts& ports, QWidget* parent = nullptr);

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
    void showQuestions();
    void askPassword(const PendingExtractionPassword& question);

    DownloadManager& m_manager;
    QueueModel* m_model;
    QueueView* m_list;
    EmptyState* m_empty;
    QStackedLayout* m_pages;
    DropOverlay* m_overlay;
    QPointer<AddURLView> m_sheet;
    std::optional<PendingExtractionPassword> m_askedPassword; ///< what the sheet asks for
    QPointer<ArchivePasswordSheetView> m_passwordSheet;
};

} // namespace vormel
