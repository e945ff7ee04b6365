#pragma once

#include <QAbstractButton>

#include <algorithm>

namespace vormel::demo {

// What a person does at the window, by the names that its parts have.

/// Null while there is none in sight.
template <typename T>
[[nodiscard]] T* partInSight(const QWidget& window, const QString& name)
{
    const QList<T*> parts = window.findChildren<T*>(name);
    const auto found = std::find_if(parts.begin(), parts.end(), [](const T* part) { return part->isVisible(); });
    return found == parts.end() ? nullptr : *found;
}

/// Key by key. Does nothing without a part, as a person would.
void type(QWidget* into, const QString& text);

/// Does nothing without a button, and nothing to one that is greyed out.
void press(QAbstractButton* button);

/// With the mouse, at a place of the part, on whatever shows there.
void click(QWidget* part, const QPoint& place);

} // namespace vormel::demo
