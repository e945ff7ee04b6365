#pragma once

#include "platform/desktop/Folders.h"

namespace vormel::bench {

/// Writes the queue file of a profile: so many paused items with real-looking names and sizes, every tenth complete.
void writeLongQueue(const Folders& folders, int items);

} // namespace vormel::bench
