#pragma once

#include <QCheckBox>

namespace vormel {

/// A check box that is drawn as a switch, without a text of its own; to keyboard and assistive technology it is a
/// check box.
class ToggleSwitch final : public QCheckBox
{
    Q_OBJECT

public:
    explicit ToggleSwitch(QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    [[nodiscard]] bool hitButton(const QPoint& position) const override { return rect().contains(position); }
    void paintEvent(QPaintEvent* event) override;
};

} // namespace vormel
