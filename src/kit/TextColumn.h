#pragma once

#include <QLabel>
#include <QVBoxLayout>

namespace vormel {

/// A text and what belongs to it, closely one below the other; texts wrap. For the caller's layout, which owns it.
[[nodiscard]] inline QVBoxLayout* textColumn(const QList<QWidget*>& parts)
{
    constexpr int spacing = 3;
    auto* column = new QVBoxLayout;
    column->setSpacing(spacing);
    for (QWidget* part : parts) {
        if (auto* label = qobject_cast<QLabel*>(part))
            label->setWordWrap(true);
        column->addWidget(part);
    }
    return column;
}

} // namespace vormel
