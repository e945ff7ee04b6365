#include "kit/FocusInSight.h"

#include <QApplication>
#include <QScrollArea>

namespace vormel {

void keepFocusInSight(QScrollArea& area)
{
    QObject::connect(qApp, &QApplication::focusChanged, &area, [&area](QWidget* before, QWidget* now) {
        // What is being clicked must stay below the pointer, and a window that comes forward stays as it was left.
        const bool isByKeyboard = before && now && QApplication::mouseButtons() == Qt::NoButton;
        if (isByKeyboard && area.isAncestorOf(now))
            area.ensureWidgetVisible(now);
    });
}

} // namespace vormel
