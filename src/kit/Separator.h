#pragma once

#include <QWidget>

namespace vormel {

/// A hairline between two areas of a window.
class Separator final : public QWidget
{
    Q_OBJECT

public:
    explicit Separator(Qt::Orientation orientation, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace vormel
