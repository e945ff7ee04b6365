#pragma once

namespace vormel {

/// Undoes for a child process what this program does to the signals that end programs. To be called between fork and
/// exec; safe there.
void restoreDefaultSignals();

} // namespace vormel
