#pragma once

#include <QChar>

namespace vormel {

/// Does a line end here? Any of the characters that end one, in any kind of text.
[[nodiscard]] constexpr bool isNewline(QChar letter)
{
    return (letter >= u'\n' && letter <= u'\r') || letter == u'\u0085' || letter == u'\u2028' || letter == u'\u2029';
}

} // namespace vormel
