#pragma once

#include <QString>

namespace vormel {

/// A byte count for people, 1024-based: 0 "Zero KB", 1 "1 byte", below 1024 "999 bytes"; then KB without decimals, MB
/// with at most one, GB and above with at most two, trailing zeros dropped; thousands separated ("1,000 bytes").
[[nodiscard]] QString byteCountText(qint64 bytes);

/// "1.5 MB/s"; empty for none.
[[nodiscard]] QString speedText(double bytesPerSecond);

/// "1 MB / 3 MB"; only the first where no total is known.
[[nodiscard]] QString progressText(qint64 bytes, qint64 total);

} // namespace vormel
