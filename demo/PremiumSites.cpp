#include "demo/PremiumSites.h"

#include "sites/services/ClickNLoadCall.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel::demo {

namespace {

/// As long as it should be, but not with the bytes that it should have.
std::string damaged(std::string bytes)
{
    constexpr std::size_t damage = 4096;
    const std::size_t middle = bytes.size() / 2;
    return bytes.replace(middle, std::min(damage, bytes.size() - middle), damage, '\0');
}

} // namespace

PremiumSites::PremiumSites(const FilmSet& film, const QString& folder)
    : m_authority(QString::fromStdString(m_certificates.writeAuthority(folder.toStdString()).string()))
    , m_host(m_certificates, m_services.filestoreDomain.toStdString())
    , m_otherHost({.tls = m_certificates.valid({m_services.terabytezDomain.toStdString()})})
    , m_containers(m_certificates, m_services.fileCryptDomains.front().toStdString())
{
    m_host.addAccount(username.data(), password.data());
    const std::string links = linksAtHost(film) + linksAtOtherHost(film);
    m_containerLink = QString::fromStdString(
        m_containers.add({.body = sites::clickNLoadCall(links), .password = containerPassword.data()}));
}

std::string PremiumSites::linksAtHost(const FilmSet& film)
{
    std::string links;
    for (std::size_t place = 0; place < film.volumes.size(); ++place) {
        const FilmSet::Volume& volume = film.volumes[place];
        const std::string bytes = film.spoilt == place ? damaged(volume.bytes) : volume.bytes;
        const std::string page =
            m_host.addFile(volume.name.toStdString(), sites::FilestoreSite::Shape::twoForms, bytes);
        if (volume.isRecovery)
            m_recoveryPaths.push_back(page.substr(page.rfind('/')) + volume.path());
        links += page + "\r\n";
    }
    return links;
}

std::string PremiumSites::linksAtOtherHost(const FilmSet& film) const
{
    std::string links;
    for (const FilmSet::Volume& volume : film.volumes)
        links += "https://" + m_services.terabytezDomain.toStdString() + volume.path() + "\r\n";
    return links;
}

void PremiumSites::joinIn(CurlHttpClient::Options& network) const
{
    network.extraCaFile = m_authority;
    std::map<std::string, std::string> places = m_host.connectTo();
    places.merge(m_containers.connectTo());
    places[m_services.terabytezDomain.toStdString() + ":443"] = "127.0.0.1:" + std::to_string(m_otherHost.port());
    for (const auto& [from, to] : places)
        network.connectTo.insert(QByteArray::fromStdString(from), QByteArray::fromStdString(to));
}

std::size_t PremiumSites::recoveryVolumesAskedFor() const
{
    const std::vector<sites::Request> requests = m_host.fileRequests();
    return static_cast<std::size_t>(
        std::count_if(m_recoveryPaths.begin(), m_recoveryPaths.end(), [&requests](const std::string& path) {
            return std::any_of(requests.begin(), requests.end(),
                               [&path](const sites::Request& request) { return request.pathAndQuery() == path; });
        }));
}

} // namespace vormel::demo
