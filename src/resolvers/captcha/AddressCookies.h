#pragma once

#include "text/Link.h"

#include <QByteArrayList>

namespace vormel {

/// Those of the cookies, as CookieStore has them, that go with a request for this address by domain, path and secure
/// flag; each for its host alone, so that no redirect to another one takes them along. Pure.
[[nodiscard]] QByteArrayList cookiesForAddress(const Link& url, const QByteArrayList& cookies);

} // namespace vormel
