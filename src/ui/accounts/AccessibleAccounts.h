#pragma once

namespace vormel {

/// Lets assistive technology see the list of the accounts as a list, and its rows as the items of one. More than once
/// does no harm.
void installAccountsAccessibility();

} // namespace vormel
