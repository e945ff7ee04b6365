#pragma once

#include <QString>

namespace vormel {

// What the pages of Filestore call a file. Pure; any thread.

/// The name that the first heading of a file's page tells, else its title up to a "|"; empty if both are blank or name
/// the service.
[[nodiscard]] QString extractTitleName(const QString& html);

/// Without "Download" before it; " part3 RAR" at its end is ".part3.rar".
[[nodiscard]] QString normalizeTitleName(const QString& text);

} // namespace vormel
