#pragma once

#include "engine/groups/GroupLack.h"
#include "model/AppLanguage.h"

#include <QString>

namespace vormel {

/// The parts by their numbers, as they stand in a sentence: "3", "3 and 7", "3–5, 9 and 12".
[[nodiscard]] QString partNumbersText(const std::vector<PartRange>& parts, AppLanguage language);

} // namespace vormel
