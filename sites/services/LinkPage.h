#pragma once

#include "sites/Answer.h"

#include <string>

namespace vormel::sites {

// How a page for one link of a container leads to its target. Scripts hold the target in pieces.
enum class LinkPage
{
    redirect,  // 302
    newTab,    // its script follows a link with target="_blank"
    newWindow, // its script opens a window
    refresh,   // a refresh after a day that the page's text tells
    script,    // a script that goes there after a day, in the page's text
    moving,    // a script that goes there at once
    link,      // a link in the page
    nothing,   // none of these
    endless,   // a script that never ends
};

[[nodiscard]] Answer linkPageAnswer(LinkPage kind, const std::string& target);

// The parts of a container's page that have its links. In a field that programs look for:
[[nodiscard]] std::string urlsField(const std::string& lines);
// A link to an address, relative or not.
[[nodiscard]] std::string anchorTo(const std::string& address);

} // namespace vormel::sites
