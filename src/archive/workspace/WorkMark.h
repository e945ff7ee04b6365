#pragma once

#include "platform/storage/FileDescriptor.h"

/// The file in a work folder by which it is known, locked as long as somebody works there.
namespace vormel {

inline constexpr const char* workMarkName = ".vormel-mark";

/// Puts the mark into a new work folder. It is locked while the descriptor is open. Closed if it could not be made.
[[nodiscard]] FileDescriptor putWorkMark(int folder);

/// Takes over a mark that nobody holds any more. Closed if there is none, or it is held, or it is another user's.
[[nodiscard]] FileDescriptor claimWorkMark(int folder);

} // namespace vormel
