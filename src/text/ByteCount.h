#pragma once

#include <QString>

namespace vormel {

/// A byte count for people, 1024-based: 0 "Zero KB", 1 "1 byte", below 1024 "999 bytes"; then KB without decimals, MB
/// with at most one, GB and above with at most two, trailing zeros dropped; thousands separated ("1,000 bytes").
[[nodiscard]] QString byteCountText(qint64 bytes);

} // namespace vormel
