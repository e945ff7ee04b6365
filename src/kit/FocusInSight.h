#pragma once

class QScrollArea;

namespace vormel {

/// Scrolls to what the keyboard moves the focus to. The area itself does so only where the focus comes from within.
void keepFocusInSight(QScrollArea& area);

} // namespace vormel
