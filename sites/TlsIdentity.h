#pragma once

#include <string>

namespace vormel::sites {

// What a server shows to prove itself: a certificate and its private key, both as PEM.
struct TlsIdentity
{
    std::string certificate;
    std::string key;
};

} // namespace vormel::sites
