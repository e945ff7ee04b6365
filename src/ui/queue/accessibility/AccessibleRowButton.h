#pragma once

#include "ui/queue/rows/RowButton.h"

#include <QAccessible>

namespace vormel {

class AccessibleRow;

/// One of the buttons of a row as assistive technology sees it. Invalid while the row does not show it. Its row must
/// outlive it.
class AccessibleRowButton final : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    AccessibleRowButton(const AccessibleRow& row, RowButton button);

    [[nodiscard]] bool isValid() const override;
    [[nodiscard]] QObject* object() const override { return nullptr; }
    [[nodiscard]] QWindow* window() const override;
    [[nodiscard]] QAccessibleInterface* parent() const override;
    [[nodiscard]] QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* child(int /*place*/) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}
    [[nodiscard]] QRect rect() const override;
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::Button; }
    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] void* interface_cast(QAccessible::InterfaceType type) override;

    [[nodiscard]] QStringList actionNames() const override;
    void doAction(const QString& name) override;
    [[nodiscard]] QStringList keyBindingsForAction(const QString& /*name*/) const override { return {}; }

protected:
    ~AccessibleRowButton() override = default;

private:
    [[nodiscard]] QRect place() const;

    const AccessibleRow& m_row;
    RowButton m_button;
};

} // namespace vormel
