#pragma once

#include <QByteArray>

#include <optional>

namespace vormel {

/// The first percentage from 0 to 100 in one piece of a tool's output, as a fraction. A piece that is no valid UTF-8
/// has none.
[[nodiscard]] std::optional<double> firstFraction(const QByteArray& piece);

} // namespace vormel
