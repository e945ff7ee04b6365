#pragma once

#include "model/AppLanguage.h"

namespace vormel {

/// A text in both languages.
struct TextPair
{
    const char16_t* english;
    const char16_t* italian;

    [[nodiscard]] QString in(AppLanguage language) const { return pair(language, english, italian); }
};

} // namespace vormel
