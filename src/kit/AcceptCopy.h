#pragma once

#include <QDropEvent>

namespace vormel {

/// Takes what is dragged or dropped as a copy, whatever was proposed: what is taken as moved goes away where it came
/// from. As a link where there is no copy to be had; what could only be moved is refused. True if it is taken.
inline bool acceptCopy(QDropEvent& event)
{
    const Qt::DropActions possible = event.possibleActions();
    const Qt::DropAction harmless = possible.testFlag(Qt::CopyAction) ? Qt::CopyAction : Qt::LinkAction;
    const bool isTaken = possible.testFlag(harmless);
    event.setDropAction(isTaken ? harmless : Qt::IgnoreAction);
    event.setAccepted(isTaken);
    return isTaken;
}

} // namespace vormel
