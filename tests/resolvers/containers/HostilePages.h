#pragma once

#include <QString>

#include <vector>

namespace vormel::tests {

/// A page that a stranger could send to keep its reader busy, in any size.
struct HostilePage
{
    const char* name = "";
    QString before;
    QString repeated; ///< "%1" in it counts up
    QString after;

    /// About that many characters of it.
    [[nodiscard]] QString ofSize(qsizetype size) const;
};

[[nodiscard]] std::vector<HostilePage> hostilePages();

} // namespace vormel::tests
