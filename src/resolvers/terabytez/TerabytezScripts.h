#pragma once

#include "resolvers/terabytez/TerabytezSite.h"

namespace vormel::terabytezScripts {

// What is run in the pages of Terabytez.

/// Gives the page.
[[nodiscard]] QString html();
/// Gives the text of the first heading, which may be empty.
[[nodiscard]] QString heading();
/// Gives whether the page has such an element.
[[nodiscard]] QString hasElement(const QString& selector);
/// Submits the form that leads to the file, and gives whether there is a form.
[[nodiscard]] QString submitForm();
/// Goes to the account's page, by the page's own link if it has one.
[[nodiscard]] QString openAccount(const TerabytezSite& site);

} // namespace vormel::terabytezScripts
