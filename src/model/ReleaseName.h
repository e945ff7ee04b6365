#pragma once

#include <QString>

namespace vormel {

/// What stands before the first release tag ("1080p", "x264", "WEB-DL") between separators, without separators at its
/// ends; a stem without a tag comes back as it is.
[[nodiscard]] QString stripReleaseTags(const QString& stem);

/// A file name that reads well: cut at the first release tag if clean, with blanks for full stops and underscores if
/// dotsToSpaces. The extension stays as it is. A name of which nothing would be left comes back unchanged.
[[nodiscard]] QString cleanedName(const QString& name, bool clean, bool dotsToSpaces);

} // namespace vormel
