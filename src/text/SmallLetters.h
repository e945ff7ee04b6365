#pragma once

#include <QString>

namespace vormel {

/// With small letters for A to Z, and every other character as it is: enough to look for a word in a stranger's text.
/// QString::toLower() takes time that goes with the square of the length where some letter becomes two, as U+0130 does.
[[nodiscard]] QString withSmallLetters(QString text);

} // namespace vormel
