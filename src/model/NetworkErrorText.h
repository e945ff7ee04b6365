#pragma once

#include "model/AppLanguage.h"
#include "platform/http/HttpMessage.h"

namespace vormel {

/// What the user is told of a request that failed.
[[nodiscard]] QString networkErrorText(HttpError::Kind kind, AppLanguage language);

} // namespace vormel
