#pragma once

#include <QDropEvent>

namespace vormel {

/// Takes what is dragged or dropped as a copy, whatever was proposed: what is taken as moved goes away where it came
/// from.
inline void acceptCopy(QDropEvent& event)
{
    event.setDropAction(Qt::CopyAction);
    event.accept();
}

} // namespace vormel
