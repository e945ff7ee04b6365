#pragma once

#include <QString>

#include <optional>

namespace vormel {

/// The name of a file in the heading of its page; nothing where no known ending stands in it. Pure; any thread.
[[nodiscard]] std::optional<QString> terabytezFileName(const QString& heading);

} // namespace vormel
