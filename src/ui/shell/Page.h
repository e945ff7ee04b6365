#pragma once

#include "kit/Glyph.h"
#include "model/AppLanguage.h"

#include <array>

namespace vormel {

/// The pages of the window, in the order of the sidebar.
enum class Page
{
    downloads,
    accounts,
    settings,
};

inline constexpr std::array<Page, 3> allPages{Page::downloads, Page::accounts, Page::settings};

[[nodiscard]] Glyph pageGlyph(Page page);
/// As the sidebar names it.
[[nodiscard]] QString pageLabel(Page page, AppLanguage language);
/// As the window's title names it.
[[nodiscard]] QString pageTitle(Page page, AppLanguage language);

} // namespace vormel
