#pragma once

#include <QPushButton>

namespace vormel {

/// A push button with air on both sides of its text, which some styles leave out.
class SheetButton final : public QPushButton
{
    Q_OBJECT

public:
    using QPushButton::QPushButton;

    [[nodiscard]] QSize sizeHint() const override
    {
        constexpr int air = 20;
        return QPushButton::sizeHint().expandedTo(QSize(fontMetrics().horizontalAdvance(text()) + 2 * air, 0));
    }
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }
};

} // namespace vormel
