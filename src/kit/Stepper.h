#pragma once

#include <QSpinBox>
#include <QWheelEvent>

namespace vormel {

/// A spin box that leaves the wheel to the page around it until the user is in it: scrolling a page past it must not
/// change it.
class Stepper final : public QSpinBox
{
    Q_OBJECT

public:
    explicit Stepper(QWidget* parent)
        : QSpinBox(parent)
    {
        setFocusPolicy(Qt::StrongFocus); // not by the wheel
    }

protected:
    void wheelEvent(QWheelEvent* event) override
    {
        if (hasFocus())
            QSpinBox::wheelEvent(event);
        else
            event->ignore();
    }
};

} // namespace vormel
