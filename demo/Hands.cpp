#include "demo/Hands.h"

#include <QCoreApplication>
#include <QKeyEvent>

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

} // namespace vormel::demo
