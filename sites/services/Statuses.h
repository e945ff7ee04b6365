#pragma once

namespace vormel::sites {

// What the pages of services answer with.
inline constexpr int ok = 200;
inline constexpr int movedPermanently = 301;
inline constexpr int found = 302;
inline constexpr int unauthorized = 401;
inline constexpr int forbidden = 403;
inline constexpr int notFound = 404;

} // namespace vormel::sites
