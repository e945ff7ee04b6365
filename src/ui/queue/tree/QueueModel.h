#pragma once

#include "ui/queue/tree/QueueTree.h"

namespace vormel {

class Clock;

/// The queue as its list shows it, in the order of the queue. Follows the manager, which must outlive it as the clock
/// must; changes of items are gathered and told once per turn of the event loop. No value of a row is made before
/// somebody asks for it.
class QueueModel : public QueueTree
{
    Q_OBJECT

public:
    /// Finished values. DisplayRole is the name; ToolTipRole and AccessibleTextRole are served too.
    enum Role
    {
        idRole = Qt::UserRole, ///< of the item; null for a header
        linesRole,             ///< RowLines as a number; together with SizeHintRole in dataChanged another height
        nameRole,
        headerRole,  ///< all of a header, as HeaderContent; the roles below are those of a row
        contentRole, ///< all of a row, as RowContent
        movingRole,  ///< does something in the row move or count?
        statusRole,  ///< DownloadStatus::Kind as a number
        statusTextRole,
        hostRole,
        progressRole,
        byteTextRole,
        speedTextRole,
        recoveryTextRole,
        extractionTextRole,
        copyRole, ///< what the user copies of a row or header
    };

    QueueModel(DownloadManager& manager, Clock& clock, QObject* parent = nullptr);

    [[nodiscard]] AppLanguage language() const { return m_manager.settings().language.value(); }
    [[nodiscard]] Clock& clock() const { return m_clock; }
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

private:
    void insertItems(qsizetype first, qsizetype count);
    void putBackItems(const QSet<ItemId>& ids);
    void showItems(const std::vector<ItemPtr>& items);
    void removeItems(const QSet<ItemId>& ids);
    void noteChange(const ItemId& id, ItemFields fields);
    void tellChanges();
    void tellRows(const QHash<ItemId, ItemFields>& changed);
    void tellSpans(QueueEntry* parent, std::vector<int> unsorted);
    void tellAll();
    void tellHeader(const QString& groupId);
    bool noteRegrouped(GroupChanges& changes) const;
    void noteLacking(GroupChanges& changes) const;
    [[nodiscard]] std::vector<int> lackingRows() const;
    [[nodiscard]] bool mayRegroup(const DownloadItem& item, ItemFields fields) const;
    [[nodiscard]] bool readLines(QueueEntry* parent, int row);

    [[nodiscard]] QVariant rowData(const DownloadItem& item, const QModelIndex& index, int role) const;
    [[nodiscard]] QVariant groupData(const QueueEntry& entry, int role) const;
    [[nodiscard]] QVariant contentValue(const RowContent& content, int role) const;
    [[nodiscard]] HeaderContent header(const QueueEntry& entry) const;
    [[nodiscard]] static RowLines toldLines(const QueueEntry& entry, const QModelIndex& index);

    DownloadManager& m_manager;
    Clock& m_clock;
    QHash<ItemId, ItemFields> m_changed; ///< since the views were told last
};

} // namespace vormel
