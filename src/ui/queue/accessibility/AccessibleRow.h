#pragma once

#include "ui/queue/rows/RowButton.h"
#include "ui/queue/tree/RowKey.h"

#include <QAccessible>
#include <QMap>

namespace vormel {

class QueueView;

/// A row or header of the queue as assistive technology sees it: its texts as its name, its buttons as its children, in
/// the order of painting. Once the row has left the queue it says that it is invalid, and does nothing. The view must
/// outlive it.
class AccessibleRow final : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    AccessibleRow(QueueView& view, RowKey key);

    [[nodiscard]] QueueView& view() const { return m_view; }
    /// Invalid once the row has left the queue.
    [[nodiscard]] QModelIndex index() const;

    [[nodiscard]] bool isValid() const override { return index().isValid(); }
    [[nodiscard]] QObject* object() const override { return nullptr; }
    [[nodiscard]] QWindow* window() const override;
    [[nodiscard]] QAccessibleInterface* parent() const override;
    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override;
    [[nodiscard]] QAccessibleInterface* child(int place) const override;
    [[nodiscard]] int childCount() const override;
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override;
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}
    [[nodiscard]] QRect rect() const override;
    /// Qt 6.4 hands items of a tree on as cells of a table, and screen readers then look for the table.
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::ListItem; }
    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] void* interface_cast(QAccessible::InterfaceType type) override;

    [[nodiscard]] QStringList actionNames() const override;
    void doAction(const QString& name) override;
    [[nodiscard]] QStringList keyBindingsForAction(const QString& /*name*/) const override { return {}; }

protected:
    ~AccessibleRow() override;

private:
    [[nodiscard]] bool isHeader() const;
    [[nodiscard]] QAccessibleInterface* buttonInterface(RowButton button) const;
    void select(const QModelIndex& index);
    void openMenu(const QModelIndex& index);

    QueueView& m_view;
    RowKey m_key;
    mutable QMap<RowButton, QAccessible::Id> m_buttons; ///< those that were asked for
};

} // namespace vormel
