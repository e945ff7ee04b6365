#pragma once

#include "kit/Glyph.h"
#include "kit/Theme.h"

#include <QIcon>

namespace vormel {

/// A glyph for buttons, actions and list rows. It takes its colour from the application's palette each time it is
/// painted, and so follows a change between light and dark by itself; on a selected row it takes the text's colour
/// there.
[[nodiscard]] QIcon glyphIcon(Glyph glyph, Tint tint = Tint::text);

/// The program's icon, in its own colours.
[[nodiscard]] QIcon programIcon();

} // namespace vormel
