#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace vormel::architecture {

/// One source file: where it stands below src/ and its lines without comments, each in its place.
struct SourceFile
{
    std::string path;
    std::vector<std::string> lines;

    /// The first part of the path; empty for a file that stands directly in src/.
    [[nodiscard]] std::string floor() const;
    /// As compilers and editors print it; lines count from one.
    [[nodiscard]] std::string position(std::size_t line) const;
};

/// The text with every comment blanked and every line kept, so that no rule judges prose.
[[nodiscard]] std::string withoutComments(const std::string& text);

/// Every header and source file below the folder, in the order of their paths.
[[nodiscard]] std::vector<SourceFile> readSources(const std::filesystem::path& folder);

} // namespace vormel::architecture
