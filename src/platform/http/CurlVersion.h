#pragma once

#include <QString>

namespace vormel {

/// "7.88.1 (OpenSSL/3.0.17)": the library that is there, which need not be the one that the program was built with.
[[nodiscard]] QString curlVersion();

} // namespace vormel
