#pragma once

#include <openssl/evp.h>
#include <openssl/x509.h>

#include <memory>
#include <string>

namespace vormel::sites {

struct PemDeleter
{
    void operator()(X509* certificate) const { X509_free(certificate); }
    void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
};
using CertificateHandle = std::unique_ptr<X509, PemDeleter>;
using KeyHandle = std::unique_ptr<EVP_PKEY, PemDeleter>;

// To and from PEM text. All throw std::runtime_error if the library refuses.
[[nodiscard]] CertificateHandle certificateFromPem(const std::string& pem);
[[nodiscard]] KeyHandle keyFromPem(const std::string& pem);
[[nodiscard]] std::string toPem(X509& certificate);
[[nodiscard]] std::string toPem(EVP_PKEY& key);

} // namespace vormel::sites
