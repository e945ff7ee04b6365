#pragma once

#include <QString>

#include <optional>

namespace vormel {

/// Writes the command as a small script that everybody may run, "vormel_install.command" in the folder, whole or not
/// at all and in the place of an earlier one. The folder is made if it is missing and closed to all but this user: a
/// script of a known name in a folder that others may write to could be theirs by the time that it is run. The path
/// comes back, or nothing if writing failed.
[[nodiscard]] std::optional<QString> writeTerminalScript(const QString& folder, const QString& command);

} // namespace vormel
