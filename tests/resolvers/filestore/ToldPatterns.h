#pragma once

#include "resolvers/filestore/FilestoreForms.h"

#include <optional>

namespace vormel::told {

// What the scanners of Filestore's pages mean, as plain regular expressions: short, and hopeless on a hostile page.

/// How a page's address was found.
struct DirectLink
{
    Link url;
    std::size_t kind = 0; ///< of five, in their order
};

[[nodiscard]] std::optional<DirectLink> extractDirectLink(const QString& html, const Link& pageUrl,
                                                          const QString& domain);
[[nodiscard]] QString extractTitleName(const QString& html);
[[nodiscard]] QString normalizeTitleName(QString text);
[[nodiscard]] FormFields parseHiddenInputs(const QString& html);
[[nodiscard]] std::optional<DownloadForm> findDownloadForm(const QString& html, const Link& baseUrl);

} // namespace vormel::told
