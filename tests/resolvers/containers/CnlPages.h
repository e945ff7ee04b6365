#pragma once

#include <QByteArray>
#include <QString>

namespace vormel::tests {

/// Encrypted as a container does it: AES in CBC mode, with a vector of 16 bytes.
[[nodiscard]] QByteArray encryptedCNL(const QByteArray& plain, const QByteArray& key, const QByteArray& vector);

/// A key of that many bytes.
[[nodiscard]] QByteArray cnlKey(qsizetype length);

/// The call in a page's script.
[[nodiscard]] QString cnlCall(const QByteArray& key, const QByteArray& cipher);

/// The same for a text; the key's first bytes are the vector.
[[nodiscard]] QString cnlCallWith(const QByteArray& plain, const QByteArray& key = cnlKey(16));

} // namespace vormel::tests
