#pragma once

#include <QByteArray>

#include <optional>

namespace vormel {

/// Undoes AES in CBC mode with PKCS7 padding; the first 16 bytes of the key are the initialisation vector too. Nothing
/// for a key that is not 16 or 32 bytes long, which is all that Click'N'Load uses, and for a cipher text that does not
/// come out whole.
[[nodiscard]] std::optional<QByteArray> decryptedCNL(const QByteArray& cipher, const QByteArray& key);

} // namespace vormel
