#pragma once

#include "archive/tools/ToolWatch.h"
#include "model/AppLanguage.h"

namespace vormel {

/// What the program runs on, as a report of a fault should tell. A value.
struct Surroundings
{
    QString system;
    QString qt;
    QString curl;
    bool hasWebEngine = false;
    std::vector<ToolPlace> tools;
};

/// A line for each.
[[nodiscard]] QString surroundingsText(const Surroundings& surroundings, AppLanguage language);

} // namespace vormel
