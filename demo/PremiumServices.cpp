#include "demo/PremiumServices.h"

namespace vormel::demo {

PremiumServices::PremiumServices(const sites::TestCertificates& certificates)
    : filestore(certificates, names.filestoreDomain.toStdString())
    , terabytez(certificates, names.terabytezDomain.toStdString())
    , containers(certificates, names.fileCryptDomains.front().toStdString())
{}

sites::Switchboard::Places PremiumServices::places() const
{
    sites::Switchboard::Places places = filestore.connectTo();
    places.merge(terabytez.connectTo());
    places.merge(containers.connectTo());
    return places;
}

void PremiumServices::joinIn(CurlHttpClient::Options& network) const
{
    for (const auto& [from, to] : places())
        network.connectTo.insert(QByteArray::fromStdString(from), QByteArray::fromStdString(to));
}

} // namespace vormel::demo
