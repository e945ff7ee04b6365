#pragma once

#include <QByteArray>
#include <QString>

#include <openssl/bn.h>

#include <memory>

namespace vormel::fixtures {

/// The way in which the keyring wants to be told its password: both sides agree on a key, so that nobody on the bus
/// reads along.
class SealedAnswer
{
public:
    SealedAnswer();

    /// What lets the other side agree on the key.
    [[nodiscard]] QString opening() const;
    /// Takes the other side's.
    void agree(const QString& exchange);
    [[nodiscard]] QString sealed(const QByteArray& text) const;

private:
    using Number = std::unique_ptr<BIGNUM, decltype(&BN_free)>;

    Number m_prime;
    Number m_own;
    QByteArray m_public;
    QByteArray m_key;
};

} // namespace vormel::fixtures
