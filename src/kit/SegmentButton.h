#pragma once

#include <QRadioButton>

namespace vormel {

/// One choice of a SegmentedPicker.
class SegmentButton final : public QRadioButton
{
    Q_OBJECT

public:
    using QRadioButton::QRadioButton;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    [[nodiscard]] bool hitButton(const QPoint& position) const override { return rect().contains(position); }
    void paintEvent(QPaintEvent* event) override;
};

} // namespace vormel
