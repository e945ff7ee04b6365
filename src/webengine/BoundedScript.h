#pragma once

#include <QString>

namespace vormel {

/// A script that gives what the given one does, with at most 4 MiB of text and as many elements in it, cut before it
/// leaves the page. On the engine's own error pages it gives nothing.
[[nodiscard]] QString boundedScript(const QString& script);

} // namespace vormel
