#pragma once

#include <QString>

#include <optional>

namespace vormel {

/// Where the first refresh that the page tells of leads, as it is written: the first match of
/// `<meta[^>]+http-equiv=["']refresh["'][^>]+content=["'][^;]+;\s*url=([^"'>\s]+)`, in any letter case.
[[nodiscard]] std::optional<QString> metaRefreshAddress(const QString& html);

} // namespace vormel
