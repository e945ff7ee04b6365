#pragma once

namespace vormel::sites {

// What the pages of services answer with.
inline constexpr int ok = 200;
inline constexpr int found = 302;

} // namespace vormel::sites
