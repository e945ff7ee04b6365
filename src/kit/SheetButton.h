#pragma once

#include <QPushButton>

namespace vormel {

/// A push button with air on both sides of its text, which some styles leave out.
class SheetButton : public QPushButton
{
    Q_OBJECT

public:
    using QPushButton::QPushButton;

    /// Less of it where there is little room.
    void setAir(int air)
    {
        m_air = air;
        updateGeometry();
    }

    [[nodiscard]] QSize sizeHint() const override
    {
        const int icon = this->icon().isNull() ? 0 : iconSize().width() + fontMetrics().horizontalAdvance(u' ');
        return QPushButton::sizeHint().expandedTo(QSize(fontMetrics().horizontalAdvance(text()) + icon + 2 * m_air, 0));
    }
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

private:
    int m_air = 20;
};

} // namespace vormel
