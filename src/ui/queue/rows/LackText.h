#pragma once

#include "engine/groups/GroupLack.h"
#include "model/AppLanguage.h"

#include <QString>

namespace vormel {

/// What a set lacks and what can be done about it, in one line; empty where nothing is lacking.
[[nodiscard]] QString lackText(const GroupLack& lack, AppLanguage language);

/// Which parts these are, where the line above only counts them; one line for each kind.
[[nodiscard]] QString lackDetail(const GroupLack& lack, AppLanguage language);

} // namespace vormel
