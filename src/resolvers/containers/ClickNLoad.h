#pragma once

#include "text/Link.h"

#include <optional>
#include <vector>

namespace vormel {

/// A call in a page's script that hands over encrypted links, and the key with them.
struct CNLPair
{
    QString keyHex;
    QString cipherBase64;

    friend bool operator==(const CNLPair&, const CNLPair&) = default;
};

/// In the order of the page.
[[nodiscard]] std::vector<CNLPair> findCNLPairs(const QString& html);

/// The links of all calls of the page, in its order, as often as they come; empty if there are none. A call that cannot
/// be decrypted is passed over.
[[nodiscard]] std::vector<Link> decodeCNLLinks(const QString& html);

/// The http or https link of one decrypted line, without what padding and form fields leave around it.
[[nodiscard]] std::optional<Link> normalizeCNLLine(QStringView line);

} // namespace vormel
