#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace vormel::architecture {

/// Each breach as one line, "file:line: what is wrong".
using Breaches = std::vector<std::string>;

/// A floor includes only itself and the floors it stands on.
[[nodiscard]] Breaches floorBreaches(const std::filesystem::path& sourceFolder);

/// Nothing below the window floors knows widgets.
[[nodiscard]] Breaches widgetBreaches(const std::filesystem::path& sourceFolder);

/// Only the program itself reads the environment; everything below is told.
[[nodiscard]] Breaches environmentBreaches(const std::filesystem::path& sourceFolder);

/// A file or folder is named after its one job, never after a drawer.
[[nodiscard]] Breaches nameBreaches(const std::filesystem::path& sourceFolder);

/// Every header can be included twice.
[[nodiscard]] Breaches pragmaBreaches(const std::filesystem::path& sourceFolder);

/// Folders of one floor do not lean on each other in a circle; told by each include that is part of one.
[[nodiscard]] Breaches circleBreaches(const std::filesystem::path& sourceFolder);

/// No file grows beyond what one job needs.
[[nodiscard]] Breaches lengthBreaches(const std::filesystem::path& sourceFolder);

} // namespace vormel::architecture
