#include "sites/TlsContext.h"

#include "sites/Pem.h"

#include <stdexcept>

namespace vormel::sites {

TlsContext::TlsContext(const TlsIdentity& identity)
    : m_context(SSL_CTX_new(TLS_server_method()))
{
    const auto certificate = certificateFromPem(identity.certificate);
    const auto key = keyFromPem(identity.key);
    if (SSL_CTX_use_certificate(m_context.get(), certificate.get()) != 1 ||
        SSL_CTX_use_PrivateKey(m_context.get(), key.get()) != 1)
        throw std::runtime_error("the certificate and the key do not belong together");
}

SslSession TlsContext::session(int socket) const
{
    SslSession session(SSL_new(m_context.get()));
    if (!session || SSL_set_fd(session.get(), socket) != 1)
        throw std::runtime_error("no TLS session for the connection");
    SSL_set_accept_state(session.get());
    return session;
}

} // namespace vormel::sites
