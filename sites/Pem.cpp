#include "sites/Pem.h"

#include <openssl/bio.h>
#include <openssl/pem.h>

#include <stdexcept>

namespace vormel::sites {

namespace {

struct BioDeleter
{
    void operator()(BIO* bio) const { BIO_free(bio); }
};
using BioHandle = std::unique_ptr<BIO, BioDeleter>;

void requirePem(bool done, const char* failure)
{
    if (!done)
        throw std::runtime_error(failure);
}

BioHandle readerOf(const std::string& text)
{
    BioHandle bio(BIO_new_mem_buf(text.data(), static_cast<int>(text.size())));
    requirePem(bio != nullptr, "no memory buffer for a PEM");
    return bio;
}

std::string textOf(BIO& bio)
{
    std::string text(BIO_ctrl_pending(&bio), '\0');
    requirePem(BIO_read(&bio, text.data(), static_cast<int>(text.size())) > 0, "an empty PEM was written");
    return text;
}

} // namespace

CertificateHandle certificateFromPem(const std::string& pem)
{
    CertificateHandle certificate(PEM_read_bio_X509(readerOf(pem).get(), nullptr, nullptr, nullptr));
    requirePem(certificate != nullptr, "not a certificate in PEM");
    return certificate;
}

KeyHandle keyFromPem(const std::string& pem)
{
    KeyHandle key(PEM_read_bio_PrivateKey(readerOf(pem).get(), nullptr, nullptr, nullptr));
    requirePem(key != nullptr, "not a private key in PEM");
    return key;
}

std::string toPem(X509& certificate)
{
    const BioHandle bio(BIO_new(BIO_s_mem()));
    requirePem(bio && PEM_write_bio_X509(bio.get(), &certificate) == 1, "cannot write a certificate as PEM");
    return textOf(*bio);
}

std::string toPem(EVP_PKEY& key)
{
    const BioHandle bio(BIO_new(BIO_s_mem()));
    requirePem(bio && PEM_write_bio_PrivateKey(bio.get(), &key, nullptr, nullptr, 0, nullptr, nullptr) == 1,
               "cannot write a key as PEM");
    return textOf(*bio);
}

} // namespace vormel::sites
