#include "ui/web/PageSheet.h"

#include <QKeyEvent>
#include <QScreen>

namespace vormel {

PageSheet::PageSheet(QWidget* parent)
    : QDialog(parent)
{
    constexpr QSize wanted(860, 600);
    QSize room = screen()->availableSize();
    if (parent)
        room = room.boundedTo(parent->window()->size());
    setMinimumSize(wanted.boundedTo(room));
    resize(minimumSize());
    setSizeGripEnabled(true);
    setWindowModality(Qt::WindowModal);
}

void PageSheet::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        event->accept(); // the page had no use for it
    else
        QDialog::keyPressEvent(event);
}

} // namespace vormel
