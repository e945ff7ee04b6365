#pragma once

#include <chrono>
#include <string>

namespace vormel::sites {

// The address as an expression of a script, so that no reader of the page's text finds it.
[[nodiscard]] std::string inPieces(const std::string& address);

// Shows for so long how many tenths of a second are left, then does what is told.
[[nodiscard]] std::string countdown(std::chrono::milliseconds time, const std::string& then);

} // namespace vormel::sites
