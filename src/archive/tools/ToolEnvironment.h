#pragma once

#include <QProcessEnvironment>

namespace vormel {

/// The surroundings that the tools run in: what they need of ours, and nothing that would change what they do. So no
/// variable with switches or options, no settings file of the user's, English messages, and names in UTF-8.
[[nodiscard]] QProcessEnvironment toolEnvironment(const QProcessEnvironment& ours);

} // namespace vormel
