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

PremiumSites::PremiumSites(const FilmSet& film, PremiumServices& services)
    : m_services(services)
{
    services.filestore.addAccount(username.data(), password.data());
    const std::string links = linksAtHost(film) + linksAtOtherHost(film);
    m_containerLink = QString::fromStdString(
        services.containers.add({.body = sites::clickNLoadCall(links), .password = containerPassword.data()}));
}

std::string PremiumSites::linksAtHost(const FilmSet& film)
{
    std::string links;
    for (std::size_t place = 0; place < film.volumes.size(); ++place) {
        const FilmSet::Volume& volume = film.volumes[place];
        const std::string bytes = film.spoilt == place ? damaged(volume.bytes) : volume.bytes;
        const std::string page =
            m_services.filestore.addFile(volume.name.toStdString(), sites::FilestoreSite::Shape::twoForms, bytes);
        if (volume.isRecovery)
            m_recoveryPaths.push_back(page.substr(page.rfind('/')) + volume.path());
        links += page + "\r\n";
    }
    return links;
}

std::string PremiumSites::linksAtOtherHost(const FilmSet& film)
{
    std::string links;
    for (const FilmSet::Volume& volume : film.volumes) {
        links += m_services.terabytez.addFile(volume.name.toStdString(), sites::TerabytezSite::Shape::redirect,
                                              volume.bytes) +
                 "\r\n";
    }
    return links;
}

int PremiumSites::connectionsToOtherHost() const
{
    return m_services.terabytez.pages().connectionsAccepted() + m_services.terabytez.files().connectionsAccepted();
}

std::size_t PremiumSites::recoveryVolumesAskedFor() const
{
    const std::vector<sites::Request> requests = m_services.filestore.fileRequests();
    return static_cast<std::size_t>(
        std::count_if(m_recoveryPaths.begin(), m_recoveryPaths.end(), [&requests](const std::string& path) {
            return std::any_of(requests.begin(), requests.end(),
                               [&path](const sites::Request& request) { return request.pathAndQuery() == path; });
        }));
}

} // namespace vormel::demo
