#include "SealedAnswer.h"

#include <QCryptographicHash>
#include <QMessageAuthenticationCode>
#include <QRegularExpression>

#include <openssl/evp.h>

using namespace Qt::StringLiterals;

namespace vormel::fixtures {

namespace {

constexpr int keySize = 16;
constexpr int ownBits = 512;
constexpr int primeSize = 192;

QByteArray bytesOf(const BIGNUM* number)
{
    QByteArray bytes(primeSize, '\0');
    BN_bn2binpad(number, reinterpret_cast<unsigned char*>(bytes.data()), primeSize);
    return bytes;
}

QByteArray power(const BIGNUM* base, const BIGNUM* exponent, const BIGNUM* prime)
{
    const std::unique_ptr<BIGNUM, decltype(&BN_free)> result(BN_new(), &BN_free);
    const std::unique_ptr<BN_CTX, decltype(&BN_CTX_free)> scratch(BN_CTX_new(), &BN_CTX_free);
    BN_mod_exp(result.get(), base, exponent, prime, scratch.get());
    return bytesOf(result.get());
}

QByteArray keyFrom(const QByteArray& shared)
{
    constexpr auto method = QCryptographicHash::Sha256;
    const QByteArray noSalt(QCryptographicHash::hashLength(method), '\0');
    const QByteArray drawn = QMessageAuthenticationCode::hash(shared, noSalt, method);
    return QMessageAuthenticationCode::hash(QByteArray(1, '\1'), drawn, method).first(keySize);
}

} // namespace

SealedAnswer::SealedAnswer()
    : m_prime(BN_get_rfc3526_prime_1536(nullptr), &BN_free)
    , m_own(BN_new(), &BN_free)
{
    BN_rand(m_own.get(), ownBits, BN_RAND_TOP_ONE, BN_RAND_BOTTOM_ANY);
    const Number two(BN_new(), &BN_free);
    BN_set_word(two.get(), 2);
    m_public = power(two.get(), m_own.get(), m_prime.get());
}

QString SealedAnswer::opening() const
{
    return u"[sx-aes-1]\npublic="_s + QString::fromLatin1(m_public.toBase64()) + u'\n';
}

void SealedAnswer::agree(const QString& exchange)
{
    static const QRegularExpression line(u"^public=(.+)$"_s, QRegularExpression::MultilineOption);
    const QString told = line.match(exchange).captured(1);
    if (told.isEmpty())
        return;
    const QByteArray bytes = QByteArray::fromBase64(told.toLatin1());
    const Number other(
        BN_bin2bn(reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<int>(bytes.size()), nullptr),
        &BN_free);
    // The keyring leaves out the zeros that the shared number begins with, as one in 256 does.
    QByteArray shared = power(other.get(), m_own.get(), m_prime.get());
    while (shared.startsWith('\0'))
        shared.remove(0, 1);
    m_key = keyFrom(shared);
}

QString SealedAnswer::sealed(const QByteArray& text) const
{
    const QByteArray start(keySize, 'i');
    QByteArray closed(text.size() + keySize, '\0');
    const auto bytes = [](auto& array) { return reinterpret_cast<const unsigned char*>(array.constData()); };
    auto* const out = reinterpret_cast<unsigned char*>(closed.data());
    int size = 0;
    int rest = 0;
    const std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> cipher(EVP_CIPHER_CTX_new(),
                                                                                 &EVP_CIPHER_CTX_free);
    EVP_EncryptInit_ex(cipher.get(), EVP_aes_128_cbc(), nullptr, bytes(m_key), bytes(start));
    EVP_EncryptUpdate(cipher.get(), out, &size, bytes(text), static_cast<int>(text.size()));
    EVP_EncryptFinal_ex(cipher.get(), out + size, &rest);
    closed.truncate(size + rest);
    return opening() + u"secret="_s + QString::fromLatin1(closed.toBase64()) + u"\niv="_s +
           QString::fromLatin1(start.toBase64()) + u'\n';
}

} // namespace vormel::fixtures
