#pragma once

#include "platform/desktop/Folders.h"

namespace vormel::bench {

/// Writes the queue file of a profile: so many paused items with real-looking names and sizes, every tenth complete.
void writeLongQueue(const Folders& folders, int items);

/// The same with all of them paused: a set of so many volumes, then sets of 20 volumes and single files by turns.
void writeLongQueueOfSets(const Folders& folders, int items, int firstSet);

} // namespace vormel::bench
