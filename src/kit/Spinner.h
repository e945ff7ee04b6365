#pragma once

#include <QBasicTimer>
#include <QWidget>

namespace vormel {

/// Turns while something is waited for, where the style lets things move. Somebody else says what that is.
class Spinner final : public QWidget
{
    Q_OBJECT

public:
    explicit Spinner(int size, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override { return {m_size, m_size}; }

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    int m_size;
    int m_angle = 0;
    QBasicTimer m_turning;
};

} // namespace vormel
