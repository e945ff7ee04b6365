#pragma once

#include "model/ItemId.h"
#include "ui/queue/RemovalQuestion.h"

#include <QObject>
#include <QSet>

#include <functional>

class QAction;

namespace vormel {

class DownloadManager;

/// The commands for many rows at once and their undoing, for the menu of the queue. What would do nothing is disabled;
/// refresh() looks, as the menu is about to open. The manager outlives it.
class BulkCommands final : public QObject
{
    Q_OBJECT

public:
    /// Opens a sheet of the page, or deletes it where another one is open.
    using Show = std::function<void(QDialog* sheet)>;

    BulkCommands(DownloadManager& manager, Show show, QWidget* page);

    [[nodiscard]] QAction* tryFailedAgain() const { return m_tryFailedAgain; }
    [[nodiscard]] QList<QAction*> removals() const { return {m_removeFailed, m_removeUnfinished, m_removeAll}; }
    [[nodiscard]] QList<QAction*> undos() const { return {m_undoAdd, m_undoRemove}; }

    /// Walks over the queue once.
    void refresh();

private:
    [[nodiscard]] QAction* makeAction(const char* name, void (BulkCommands::*run)());
    void retryFailed();
    void removeFailed();
    void askForUnfinished();
    void askForAll();
    void undoAdd();
    void undoRemove();
    /// What was added since the question is not meant by it.
    void ask(RemovalQuestion::Kind kind, const QSet<ItemId>& ids);
    [[nodiscard]] bool isAnyLeftOfLastAddition() const;
    void showTexts();

    DownloadManager& m_manager;
    Show m_show;
    QWidget* m_page;
    QAction* m_tryFailedAgain;
    QAction* m_removeFailed;
    QAction* m_removeUnfinished;
    QAction* m_removeAll;
    QAction* m_undoAdd;
    QAction* m_undoRemove;
};

} // namespace vormel
