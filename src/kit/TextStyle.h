#pragma once

#include <QFont>

namespace vormel {

/// The font in another size; also right for fonts that are given in pixels.
[[nodiscard]] QFont scaledFont(QFont font, double factor);

[[nodiscard]] QFont headlineFont(QFont font); ///< the first line of a row
[[nodiscard]] QFont captionFont(const QFont& font);
[[nodiscard]] QFont boldCaptionFont(const QFont& font);
/// The font itself where all its figures are of one width, else the system's monospaced one.
[[nodiscard]] QFont digitsFont(const QFont& font);
[[nodiscard]] QFont titleFont(const QFont& font); ///< of a sheet or an empty page

} // namespace vormel
