#pragma once

#include "ui/queue/accessibility/AccessibleRows.h"
#include "ui/queue/accessibility/QueueAnnouncer.h"
#include "ui/queue/accessibility/RowOrder.h"

#include <QAccessibleWidget>

namespace vormel {

/// The list of the queue as assistive technology sees it: a list whose children are the rows, from the top down, with
/// the members of an open group behind its header. Made when the list is asked for first, so that nothing of all this
/// is there without assistive technology.
class AccessibleQueue final : public QAccessibleWidget
{
public:
    explicit AccessibleQueue(QueueView& view);

    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override;
    [[nodiscard]] QAccessibleInterface* child(int place) const override;
    [[nodiscard]] int childCount() const override { return m_order.count(); }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override;
    [[nodiscard]] QAccessibleInterface* focusChild() const override;

protected:
    ~AccessibleQueue() override = default;

private:
    QueueView& m_view;
    RowOrder m_order;
    mutable AccessibleRows m_rows;
    QueueAnnouncer m_announcer;
};

/// Lets Qt find all this for every list of the queue. More than once does no harm.
void installQueueAccessibility();

} // namespace vormel
