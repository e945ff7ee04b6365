#include "sites/TestCertificates.h"

#include "sites/TextFile.h"

#include <openssl/rand.h>
#include <openssl/x509v3.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <stdexcept>
#include <string_view>

namespace vormel::sites {

namespace {

constexpr long daySeconds = 24L * 60 * 60;

void requireStep(bool done, const char* step)
{
    if (!done)
        throw std::runtime_error(std::string("making a certificate failed: ") + step);
}

KeyHandle makeKey()
{
    KeyHandle key(EVP_PKEY_Q_keygen(nullptr, nullptr, "EC", "P-256"));
    requireStep(key != nullptr, "key");
    return key;
}

void addExtension(X509& certificate, X509& issuer, int kind, const std::string& value)
{
    struct ExtensionDeleter
    {
        void operator()(X509_EXTENSION* extension) const { X509_EXTENSION_free(extension); }
    };
    X509V3_CTX context{};
    X509V3_set_ctx(&context, &issuer, &certificate, nullptr, nullptr, 0);
    const std::unique_ptr<X509_EXTENSION, ExtensionDeleter> extension(
        X509V3_EXT_conf_nid(nullptr, &context, kind, value.c_str()));
    requireStep(extension && X509_add_ext(&certificate, extension.get(), -1) == 1, "extension");
}

void setSerial(X509& certificate)
{
    std::array<unsigned char, 8> random{};
    requireStep(RAND_bytes(random.data(), static_cast<int>(random.size())) == 1, "random number");
    std::uint64_t serial = 0;
    for (const auto byte : random)
        serial = (serial << 8) | byte;
    requireStep(ASN1_INTEGER_set_uint64(X509_get_serialNumber(&certificate), serial >> 1) == 1, "serial number");
}

void setSubject(X509& certificate, const std::string& commonName)
{
    const std::vector<unsigned char> bytes(commonName.begin(), commonName.end());
    requireStep(X509_NAME_add_entry_by_NID(X509_get_subject_name(&certificate), NID_commonName, MBSTRING_UTF8,
                                           bytes.data(), static_cast<int>(bytes.size()), -1, 0) == 1,
                "subject");
}

// All but issuer, extensions and signature; valid from a month ago until the given number of days from now.
CertificateHandle makeUnsigned(EVP_PKEY& key, const std::string& commonName, long days)
{
    CertificateHandle certificate(X509_new());
    requireStep(certificate && X509_set_version(certificate.get(), X509_VERSION_3) == 1, "version");
    setSerial(*certificate);
    setSubject(*certificate, commonName);
    requireStep(X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -30 * daySeconds), "begin");
    requireStep(X509_gmtime_adj(X509_getm_notAfter(certificate.get()), days * daySeconds), "end");
    requireStep(X509_set_pubkey(certificate.get(), &key) == 1, "public key");
    return certificate;
}

void signBy(X509& certificate, X509& issuer, EVP_PKEY& issuerKey)
{
    requireStep(X509_set_issuer_name(&certificate, X509_get_subject_name(&issuer)) == 1, "issuer");
    requireStep(X509_sign(&certificate, &issuerKey, EVP_sha256()) > 0, "signature");
}

std::string alternativeNames(const TestCertificates::Names& names)
{
    std::string text;
    for (const auto& name : names) {
        const bool isAddress = name.find_first_not_of("0123456789.") == std::string::npos;
        text.append(text.empty() ? "" : ",").append(isAddress ? "IP:" : "DNS:").append(name);
    }
    return text;
}

// A server's certificate; signed by itself without an issuer.
TlsIdentity makeIdentity(const TestCertificates::Names& names, long days, X509* issuer, EVP_PKEY* issuerKey)
{
    if (names.empty())
        throw std::invalid_argument("a server's certificate needs a name");
    const auto key = makeKey();
    const auto certificate = makeUnsigned(*key, names.front(), days);
    auto& signer = issuer ? *issuer : *certificate;
    addExtension(*certificate, signer, NID_basic_constraints, "critical,CA:FALSE");
    addExtension(*certificate, signer, NID_key_usage, "critical,digitalSignature");
    addExtension(*certificate, signer, NID_ext_key_usage, "serverAuth");
    addExtension(*certificate, signer, NID_subject_key_identifier, "hash");
    addExtension(*certificate, signer, NID_authority_key_identifier, "keyid");
    addExtension(*certificate, signer, NID_subject_alt_name, alternativeNames(names));
    signBy(*certificate, signer, issuerKey ? *issuerKey : *key);
    return {.certificate = toPem(*certificate), .key = toPem(*key)};
}

} // namespace

TestCertificates::TestCertificates()
    : m_key(makeKey())
    , m_certificate(makeUnsigned(*m_key, "Loopback test authority", 30))
{
    addExtension(*m_certificate, *m_certificate, NID_basic_constraints, "critical,CA:TRUE");
    addExtension(*m_certificate, *m_certificate, NID_key_usage, "critical,keyCertSign,cRLSign");
    // Tells apart authorities, which all have the same name.
    addExtension(*m_certificate, *m_certificate, NID_subject_key_identifier, "hash");
    signBy(*m_certificate, *m_certificate, *m_key);
}

std::string TestCertificates::authority() const
{
    return toPem(*m_certificate);
}

TlsIdentity TestCertificates::valid(const Names& names) const
{
    return makeIdentity(names, 30, m_certificate.get(), m_key.get());
}

TlsIdentity TestCertificates::expired(const Names& names) const
{
    return makeIdentity(names, -1, m_certificate.get(), m_key.get());
}

TlsIdentity TestCertificates::wrongName() const
{
    return valid({"elsewhere.example"});
}

TlsIdentity TestCertificates::selfSigned(const Names& names) const
{
    return makeIdentity(names, 30, nullptr, nullptr);
}

std::filesystem::path TestCertificates::writeAuthority(const std::filesystem::path& folder) const
{
    const auto path = folder / "authority.pem";
    writeTextFile(path, authority());
    return path;
}

void writeIdentity(const TlsIdentity& identity, const std::filesystem::path& folder)
{
    writeTextFile(folder / "certificate.pem", identity.certificate);
    writeTextFile(folder / "key.pem", identity.key);
}

} // namespace vormel::sites
