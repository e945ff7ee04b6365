#include "demo/Hands.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>

namespace vormel::demo {

void type(QWidget* into, const QString& text)
{
    if (!into)
        return;
    into->setFocus();
    for (const QChar letter : text) {
        for (const QEvent::Type half : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(half, Qt::Key_unknown, Qt::NoModifier, letter);
            QCoreApplication::sendEvent(into, &event);
        }
    }
}

void press(QAbstractButton* button)
{
    if (button)
        button->click();
}

void click(QWidget* part, const QPoint& place)
{
    QWidget* const shown = part->childAt(place);
    QWidget* const target = shown ? shown : part;
    const QPointF point = target->mapFrom(part, place);
    const QPointF onScreen = part->mapToGlobal(place);
    const auto send = [&](QEvent::Type type, Qt::MouseButton button, Qt::MouseButtons held) {
        QMouseEvent event(type, point, onScreen, button, held, Qt::NoModifier);
        QCoreApplication::sendEvent(target, &event);
    };
    send(QEvent::MouseMove, Qt::NoButton, Qt::NoButton);
    send(QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton);
    send(QEvent::MouseButtonRelease, Qt::LeftButton, Qt::NoButton);
}

} // namespace vormel::demo
