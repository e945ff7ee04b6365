#pragma once

#include <QWidget>

namespace vormel {

class StyledLabel;

/// Lies over the page while links are dragged above it. Lets every event through.
class DropOverlay final : public QWidget
{
    Q_OBJECT

public:
    explicit DropOverlay(QWidget* parent);

    void setText(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    StyledLabel* m_text;
};

} // namespace vormel
