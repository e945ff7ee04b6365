#pragma once

#include "kit/StyledLabel.h"

namespace vormel {

/// A word on a rounded ground that has a touch of its colour.
class TagLabel final : public StyledLabel
{
    Q_OBJECT

public:
    explicit TagLabel(Tint ground, QWidget* parent = nullptr);

    void setGround(Tint ground);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Tint m_ground;
};

} // namespace vormel
