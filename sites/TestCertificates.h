#pragma once

#include "sites/Pem.h"
#include "sites/TlsIdentity.h"

#include <filesystem>
#include <string>
#include <vector>

namespace vormel::sites {

// A certificate authority made on the spot, and servers' certificates from it. Names are host names or IPv4 addresses.
// All functions throw std::runtime_error if the crypto library refuses; the const ones may be called from any thread.
class TestCertificates
{
public:
    using Names = std::vector<std::string>;

    TestCertificates();

    // The authority's certificate, for clients to trust, as PEM.
    [[nodiscard]] std::string authority() const;

    [[nodiscard]] TlsIdentity valid(const Names& names = {"127.0.0.1", "localhost"}) const;
    // Ran out yesterday.
    [[nodiscard]] TlsIdentity expired(const Names& names = {"127.0.0.1", "localhost"}) const;
    // Valid, but for "elsewhere.example".
    [[nodiscard]] TlsIdentity wrongName() const;
    // Signed by itself instead of the authority.
    [[nodiscard]] TlsIdentity selfSigned(const Names& names = {"127.0.0.1", "localhost"}) const;

    // Writes the authority's certificate as authority.pem into an existing folder and returns its path.
    std::filesystem::path writeAuthority(const std::filesystem::path& folder) const;

private:
    KeyHandle m_key;
    CertificateHandle m_certificate;
};

// Writes certificate.pem and key.pem into an existing folder; throws std::runtime_error.
void writeIdentity(const TlsIdentity& identity, const std::filesystem::path& folder);

} // namespace vormel::sites
