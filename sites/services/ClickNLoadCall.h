#pragma once

#include <string>

namespace vormel::sites {

// The call in a container's page that hands these lines over, encrypted under the key of 16 bytes. Throws
// std::runtime_error if the crypto library refuses.
[[nodiscard]] std::string clickNLoadCall(const std::string& lines, const std::string& key = "0123456789abcdef");

} // namespace vormel::sites
