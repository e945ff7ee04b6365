#include "CnlPages.h"

#include <openssl/evp.h>

#include <memory>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace vormel::tests {

namespace {

const unsigned char* bytesOf(const QByteArray& bytes)
{
    return reinterpret_cast<const unsigned char*>(bytes.constData());
}

const EVP_CIPHER* cipherOf(qsizetype keyLength)
{
    return keyLength == 16 ? EVP_aes_128_cbc() : keyLength == 24 ? EVP_aes_192_cbc() : EVP_aes_256_cbc();
}

} // namespace

QByteArray encryptedCNL(const QByteArray& plain, const QByteArray& key, const QByteArray& vector)
{
    const std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> context(EVP_CIPHER_CTX_new(),
                                                                                  &EVP_CIPHER_CTX_free);
    QByteArray cipher(plain.size() + 16, '\0');
    auto* const out = reinterpret_cast<unsigned char*>(cipher.data());
    int length = 0;
    int rest = 0;
    if (EVP_EncryptInit_ex(context.get(), cipherOf(key.size()), nullptr, bytesOf(key), bytesOf(vector)) != 1 ||
        EVP_EncryptUpdate(context.get(), out, &length, bytesOf(plain), static_cast<int>(plain.size())) != 1 ||
        EVP_EncryptFinal_ex(context.get(), out + length, &rest) != 1)
        throw std::runtime_error("the test cannot encrypt");
    return cipher.first(length + rest);
}

QByteArray cnlKey(qsizetype length)
{
    return QByteArray("0123456789abcdefFEDCBA9876543210").first(length);
}

QString cnlCall(const QByteArray& key, const QByteArray& cipher)
{
    return u"<script>CNLPOP('page','%1','%2');</script>\n"_s.arg(QString::fromLatin1(key.toHex()),
                                                                 QString::fromLatin1(cipher.toBase64()));
}

QString cnlCallWith(const QByteArray& plain, const QByteArray& key)
{
    return cnlCall(key, encryptedCNL(plain, key, key.first(16)));
}

} // namespace vormel::tests
