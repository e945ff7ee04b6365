#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace vormel::sites {

// Writes the text as the file's whole content; throws std::runtime_error if that fails.
void writeTextFile(const std::filesystem::path& path, std::string_view text);

// The file's whole content; empty if there is no such file.
[[nodiscard]] std::string readTextFile(const std::filesystem::path& path);

} // namespace vormel::sites
