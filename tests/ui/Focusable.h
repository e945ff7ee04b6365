#pragma once

#include <QList>
#include <QWidget>

#include <string>

namespace vormel::fixtures {

/// Everything below that the keyboard can reach. What hands its focus on is part of what it hands it to.
[[nodiscard]] inline QList<QWidget*> focusable(const QWidget& whole)
{
    QList<QWidget*> found;
    for (QWidget* const part : whole.findChildren<QWidget*>()) {
        const bool isReachable = (part->focusPolicy() & Qt::TabFocus) != 0 && part->isEnabled();
        if (part->isVisible() && part->window() == &whole && isReachable && !part->focusProxy())
            found << part;
    }
    return found;
}

[[nodiscard]] inline std::string describe(const QWidget& part)
{
    return part.objectName().toStdString() + " of class " + part.metaObject()->className();
}

} // namespace vormel::fixtures
