#pragma once

#include "sites/TlsIdentity.h"

#include <openssl/ssl.h>

#include <memory>

namespace vormel::sites {

struct SslDeleter
{
    void operator()(SSL* session) const { SSL_free(session); }
    void operator()(SSL_CTX* context) const { SSL_CTX_free(context); }
};
using SslSession = std::unique_ptr<SSL, SslDeleter>;

// The server side of TLS with one identity. Makes sessions from any thread.
class TlsContext
{
public:
    explicit TlsContext(const TlsIdentity& identity); // throws std::runtime_error if the PEMs do not fit

    // A session to be accepted on the socket, which stays the caller's.
    [[nodiscard]] SslSession session(int socket) const;

private:
    std::unique_ptr<SSL_CTX, SslDeleter> m_context;
};

} // namespace vormel::sites
