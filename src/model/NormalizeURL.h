#pragma once

#include "text/Link.h"

namespace vormel {

/// The form in which every link enters the queue: the path loses what trails behind its last letter, number or "/",
/// such as the full stop or the bracket of the sentence it was copied from. Query and fragment are left alone.
[[nodiscard]] Link normalizeURL(const Link& url);

} // namespace vormel
