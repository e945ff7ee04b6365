#pragma once

#include "model/Services.h"
#include "platform/http/CurlHttpClient.h"
#include "sites/Switchboard.h"
#include "sites/services/ContainerSite.h"
#include "sites/services/FilestoreSite.h"
#include "sites/services/TerabytezSite.h"

namespace vormel::demo {

/// The hosts whose files want an account, and the service whose containers list them, by the names that the program
/// knows. They speak https.
struct PremiumServices
{
    explicit PremiumServices(const sites::TestCertificates& certificates);

    [[nodiscard]] sites::Switchboard::Places places() const;
    /// Leads the program to them, whatever else it is led to.
    void joinIn(CurlHttpClient::Options& network) const;

    const Services names = Services::builtIn();
    sites::FilestoreSite filestore;
    sites::TerabytezSite terabytez;
    sites::ContainerSite containers;
};

} // namespace vormel::demo
