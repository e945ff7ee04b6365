#pragma once

#include "sites/Request.h"

#include <QByteArrayList>

#include <vector>

namespace vormel::fixtures {

/// What a site was asked, a line for each request: method, address, and of the headers Referer, Cookie and
/// Content-Type, then the body. The name of the browser is left out if it is the right one.
[[nodiscard]] QByteArrayList transcript(const std::vector<sites::Request>& requests);

} // namespace vormel::fixtures
