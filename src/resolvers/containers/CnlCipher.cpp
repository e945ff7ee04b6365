#include "resolvers/containers/CnlCipher.h"

#include <openssl/evp.h>

#include <limits>
#include <memory>

namespace vormel {

namespace {

constexpr int blockLength = 16;

const EVP_CIPHER* cipherForKeyOf(qsizetype length)
{
    switch (length) {
    case 16:
        return EVP_aes_128_cbc();
    case 32:
        return EVP_aes_256_cbc();
    default:
        return nullptr;
    }
}

const unsigned char* unsignedBytes(const QByteArray& bytes)
{
    return reinterpret_cast<const unsigned char*>(bytes.constData());
}

} // namespace

std::optional<QByteArray> decryptedCNL(const QByteArray& cipher, const QByteArray& key)
{
    const EVP_CIPHER* algorithm = cipherForKeyOf(key.size());
    if (algorithm == nullptr || cipher.size() > std::numeric_limits<int>::max() - blockLength)
        return std::nullopt;
    const std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> context(EVP_CIPHER_CTX_new(),
                                                                                  &EVP_CIPHER_CTX_free);
    QByteArray plain(cipher.size() + blockLength, Qt::Uninitialized);
    auto* const out = reinterpret_cast<unsigned char*>(plain.data());
    int length = 0;
    int rest = 0;
    if (!context ||
        EVP_DecryptInit_ex(context.get(), algorithm, nullptr, unsignedBytes(key), unsignedBytes(key)) != 1 ||
        EVP_DecryptUpdate(context.get(), out, &length, unsignedBytes(cipher), static_cast<int>(cipher.size())) != 1 ||
        EVP_DecryptFinal_ex(context.get(), out + length, &rest) != 1)
        return std::nullopt;
    plain.truncate(length + rest);
    return plain;
}

} // namespace vormel
