#pragma once

#include "ui/queue/tree/RowKey.h"

#include <QObject>

#include <optional>

namespace vormel {

class AccessibleRows;
class QueueView;

/// Tells assistive technology what happens to the rows of the list: which one has the focus and what it says now, what
/// opened and closed, came and went. What happens within one turn of the event loop is told behind it. Both must
/// outlive it.
class QueueAnnouncer final : public QObject
{
    Q_OBJECT

public:
    QueueAnnouncer(QueueView& view, AccessibleRows& rows);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void followRows();
    void noteFocus();
    void tellFocus();
    void tellName();
    void tellOpenOrClosed(const QModelIndex& header);
    void tellNew(const QModelIndex& parent, int first, int last);
    void tellGoing(const QModelIndex& parent, int first, int last);

    QueueView& m_view;
    AccessibleRows& m_rows;
    bool m_isFocusNoted = false;
    std::optional<RowKey> m_toldRow; ///< the one that was told last to have the focus
    QString m_toldName;              ///< of that row
};

} // namespace vormel
