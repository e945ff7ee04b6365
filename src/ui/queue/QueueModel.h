#pragma once

#include "engine/DownloadManager.h"
#include "ui/queue/QueueRows.h"

#include <QAbstractItemModel>
#include <QSet>

namespace vormel {

/// The queue as its list shows it: one row per visible item, in the order of the queue. Follows the manager, which must
/// outlive it; changes of items are gathered and told once per turn of the event loop. No value of a row is made before
/// somebody asks for it.
class QueueModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    /// Finished values. DisplayRole is the name; ToolTipRole and AccessibleTextRole are served too.
    enum Role
    {
        IdRole = Qt::UserRole,
        ContentRole, ///< all of the row, as RowContent
        LinesRole,   ///< RowLines as a number; together with SizeHintRole in dataChanged it means another height
        NameRole,
        StatusRole, ///< DownloadStatus::Kind as a number
        StatusTextRole,
        HostRole,
        ProgressRole,
        ByteTextRole,
        SpeedTextRole,
        RecoveryTextRole,
        ExtractionTextRole,
    };

    explicit QueueModel(DownloadManager& manager, QObject* parent = nullptr);

    /// Invalid for an item that has no row.
    [[nodiscard]] QModelIndex indexOf(const ItemId& id) const;

    [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    [[nodiscard]] QModelIndex parent(const QModelIndex& child) const override;
    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

private:
    void insertItems(qsizetype first, qsizetype count);
    void removeItems(const QSet<ItemId>& ids);
    void noteChange(const ItemId& id);
    void tellChanges();
    void tellAll();
    void tellSpans(const std::vector<int>& rows);
    void dropRows(std::vector<int> rows);
    void showItem(const ItemPtr& item);
    void rebuild();
    [[nodiscard]] bool isVisible(const DownloadItem& item) const;
    [[nodiscard]] std::vector<ItemPtr> visibleItems(qsizetype first, qsizetype count) const;
    [[nodiscard]] int rowBefore(qsizetype position) const;
    [[nodiscard]] QVariant contentValue(const RowContent& content, int role) const;
    [[nodiscard]] AppLanguage language() const { return m_manager.settings().language.value(); }

    DownloadManager& m_manager;
    QueueRows m_rows;
    QSet<ItemId> m_changed; ///< since the views were told last
};

} // namespace vormel
