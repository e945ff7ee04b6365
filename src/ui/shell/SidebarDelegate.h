#pragma once

#include <QStyledItemDelegate>

namespace vormel {

/// Draws a row of the sidebar: icon and label on a rounded plate when it is the current one.
class SidebarDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

} // namespace vormel
